#include <PanelKestrin/keystrokefilters.h>
#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>
#include <QLineEdit>

namespace PanelKestrin {

namespace {

bool isDigit(qint16 code)
{
    return code >= '0' && code <= '9';
}

int countDigits(QStringView text)
{
    int n = 0;
    for (const QChar c : text)
        n += (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ? 1 : 0;
    return n;
}

} // namespace

qint16 IntegerKeyFilter(qint16 KeyAscii)
{
    if (KeyAscii >= 0 && KeyAscii < 32)
        return KeyAscii;
    return isDigit(KeyAscii) ? KeyAscii : 0;
}

qint16 DecimalKeyFilter(qint16 KeyAscii, QLineEdit *EditBox, qint16 Decimals, qint16 IntegerDigits)
{
    if (KeyAscii >= 0 && KeyAscii < 32)
        return KeyAscii;
    if (!EditBox)
        throw RuntimeError(ErrObjectNotSet,
                           QCoreApplication::translate("PanelKestrin::KeystrokeFilters",
                                                       "The decimal keystroke filter was given no edit box."),
                           QStringLiteral("PanelKestrin.DecimalKeyFilter"));
    const bool point = KeyAscii == '.';
    if (!point && !isDigit(KeyAscii))
        return 0;

    // The text as it would be with the character typed over the selection or at the caret.
    const QString text = EditBox->text();
    qsizetype from = EditBox->cursorPosition();
    qsizetype to = from;
    if (EditBox->hasSelectedText()) {
        from = EditBox->selectionStart();
        to = from + EditBox->selectedText().size();
    }
    const QString kept = text.left(from) + text.mid(to);
    const QString result = text.left(from) + QChar(ushort(KeyAscii)) + text.mid(to);

    const qsizetype pointAt = result.indexOf(QLatin1Char('.'));
    if (point && kept.contains(QLatin1Char('.')))
        return 0;
    // A field without a fixed scale takes any number of digits on either side of the point.
    if (Decimals == ScaleNotApplicable)
        return KeyAscii;
    if (point)
        return countDigits(QStringView(result).mid(pointAt + 1)) <= Decimals ? KeyAscii : 0;
    const QStringView before = pointAt < 0 ? QStringView(result) : QStringView(result).left(pointAt);
    const QStringView after = pointAt < 0 ? QStringView() : QStringView(result).mid(pointAt + 1);
    return countDigits(before) <= IntegerDigits && countDigits(after) <= Decimals ? KeyAscii : 0;
}

} // namespace PanelKestrin
