#include "datatestsupport.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/keystrokefilters.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

using namespace PanelKestrin;

namespace {

// An entry box that asks the process-wide settings' filters about every typed character,
// as the grid's cell editor does.
class NumericBox : public QLineEdit
{
public:
    int decimals = 0;     // 0: the integer filter
    int integerDigits = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->text().size() == 1) {
            const auto code = qint16(event->text().at(0).unicode());
            const ConnectionSettings &settings = ConnectionSettings::instance();
            const qint16 accepted = decimals == 0
                                        ? settings.IntegerKeyFilter(code)
                                        : settings.DecimalKeyFilter(code, this, qint16(decimals), qint16(integerDigits));
            if (accepted == 0)
                return;
            if (accepted != code) {
                QKeyEvent replaced(event->type(), event->key(), event->modifiers(), QString(QChar(accepted)));
                QLineEdit::keyPressEvent(&replaced);
                return;
            }
        }
        QLineEdit::keyPressEvent(event);
    }
};

} // namespace

class tst_KeystrokeFilters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void typing_data();
    void typing();
    void settingsDefaultsAndReplacement();
};

void tst_KeystrokeFilters::cleanup()
{
    ConnectionSettings::instance().setIntegerKeyFilter({});
    ConnectionSettings::instance().setDecimalKeyFilter({});
}

void tst_KeystrokeFilters::typing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("caret");
    QTest::addColumn<int>("selectionLength"); // selected from the caret onwards
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<int>("integerDigits");
    QTest::addColumn<QString>("result");
    QTest::newRow("integer: digits only") << "" << 0 << 0 << "1a-2.3 4" << 0 << 0 << "1234";
    QTest::newRow("within both limits") << "" << 0 << 0 << "123.45" << 2 << 3 << "123.45";
    QTest::newRow("too many integer digits") << "" << 0 << 0 << "12345" << 2 << 3 << "123";
    QTest::newRow("too many decimals") << "" << 0 << 0 << "1.2345" << 2 << 3 << "1.23";
    QTest::newRow("second point") << "1.2" << 3 << 0 << ".5" << 2 << 3 << "1.25";
    QTest::newRow("minus, letters, comma") << "" << 0 << 0 << "-a,7" << 2 << 3 << "7";
    QTest::newRow("point leaving too many decimals") << "12345" << 1 << 0 << "." << 2 << 5 << "12345";
    QTest::newRow("digit before the point, integer part full") << "123.4" << 0 << 0 << "9" << 2 << 3 << "123.4";
    QTest::newRow("digit after the point, integer part full") << "123.4" << 5 << 0 << "9" << 2 << 3 << "123.49";
    QTest::newRow("typed over a selection") << "123.45" << 0 << 6 << "7" << 2 << 3 << "7";
    QTest::newRow("point over a selected point") << "12.34" << 1 << 3 << "." << 2 << 3 << "1.4";
    QTest::newRow("decimal inserted, room left") << "1.2" << 2 << 0 << "3" << 2 << 3 << "1.32";
    // A column without a fixed scale (a floating-point field reports 255 decimals, and its
    // precision less that as integer digits) takes any number: digits and one point.
    QTest::newRow("scale not applicable: any number") << "" << 0 << 0 << "1234567.891" << 255 << -240 << "1234567.891";
    QTest::newRow("scale not applicable: one point") << "" << 0 << 0 << "1.2.3" << 255 << -248 << "1.23";
    QTest::newRow("scale not applicable: letters") << "" << 0 << 0 << "a1-b" << 255 << -240 << "1";
    // Control characters pass both filters, so editing keys still work in a full box.
    QTest::newRow("integer: backspace") << "12" << 2 << 0 << "\b" << 0 << 0 << "1";
    QTest::newRow("backspace, both parts full") << "12.34" << 5 << 0 << "\b" << 2 << 2 << "12.3";
}

void tst_KeystrokeFilters::typing()
{
    QFETCH(QString, text);
    QFETCH(int, caret);
    QFETCH(int, selectionLength);
    QFETCH(QString, typed);
    QFETCH(int, decimals);
    QFETCH(int, integerDigits);
    QFETCH(QString, result);
    NumericBox box;
    box.decimals = decimals;
    box.integerDigits = integerDigits;
    box.setText(text);
    if (selectionLength)
        box.setSelection(caret, selectionLength);
    else
        box.setCursorPosition(caret);
    QTest::keyClicks(&box, typed);
    QCOMPARE(box.text(), result);
}

void tst_KeystrokeFilters::settingsDefaultsAndReplacement()
{
    ConnectionSettings &settings = ConnectionSettings::instance();
    QCOMPARE(&settings, &ConnectionSettings::instance());
    QCOMPARE(settings.property("ConnectString").toString(), QString());
    QCOMPARE(settings.property("DatabaseKind").toInt(), 0);
    settings.setProperty("ConnectString", QStringLiteral("Provider=SQLite;Data Source=:memory:"));
    settings.setProperty("DatabaseKind", 2);
    QCOMPARE(settings.ConnectString(), QStringLiteral("Provider=SQLite;Data Source=:memory:"));
    QCOMPARE(settings.DatabaseKind(), qint16(2));

    // A host's own filters: commas typed as points, and every digit turned into '9'.
    settings.setDecimalKeyFilter([](qint16 key, QLineEdit *box, qint16 decimals, qint16 integerDigits) {
        return DecimalKeyFilter(key == ',' ? qint16('.') : key, box, decimals, integerDigits);
    });
    settings.setIntegerKeyFilter([](qint16 key) { return IntegerKeyFilter(key) ? qint16('9') : qint16(0); });
    NumericBox decimal;
    decimal.decimals = 2;
    decimal.integerDigits = 3;
    QTest::keyClicks(&decimal, QStringLiteral("12,5"));
    QCOMPARE(decimal.text(), QStringLiteral("12.5"));
    NumericBox integer;
    QTest::keyClicks(&integer, QStringLiteral("1x2"));
    QCOMPARE(integer.text(), QStringLiteral("99"));

    // Empty functions bring the built-in filters back.
    settings.setDecimalKeyFilter({});
    settings.setIntegerKeyFilter({});
    QCOMPARE(settings.DecimalKeyFilter(',', &decimal, 2, 3), 0);
    QCOMPARE(settings.IntegerKeyFilter('x'), 0);
    // Without an edit box the decimal filter cannot count digits.
    QCOMPARE(DataTest::capture([] { DecimalKeyFilter('1', nullptr, 2, 2); }).number, 91);
}

QTEST_MAIN(tst_KeystrokeFilters)
#include "tst_keystrokefilters.moc"
