#include <PanelKestrin/strings.h>

#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>

namespace PanelKestrin {

namespace {

Qt::CaseSensitivity sensitivity(CompareMethod compare)
{
    return compare == vbTextCompare ? Qt::CaseInsensitive : Qt::CaseSensitive;
}

[[noreturn]] void invalidArgument(const char *function, const char *argument, int value)
{
    throw RuntimeError(ErrInvalidProcedureCall,
                       QCoreApplication::translate("PanelKestrin::Strings",
                                                   "Invalid procedure call or argument: %1 = %2")
                           .arg(QLatin1String(argument))
                           .arg(value),
                       QLatin1String(function));
}

int firstNonSpace(const QString &s)
{
    int i = 0;
    while (i < s.size() && s.at(i) == QLatin1Char(' '))
        ++i;
    return i;
}

int endWithoutSpaces(const QString &s)
{
    int end = s.size();
    while (end > 0 && s.at(end - 1) == QLatin1Char(' '))
        --end;
    return end;
}

} // namespace

QString Trim(const QString &String)
{
    const int start = firstNonSpace(String);
    if (start == String.size())
        return QString();
    return String.mid(start, endWithoutSpaces(String) - start);
}

QString LTrim(const QString &String)
{
    return String.mid(firstNonSpace(String));
}

QString RTrim(const QString &String)
{
    return String.left(endWithoutSpaces(String));
}

QString UCase(const QString &String)
{
    return String.toUpper();
}

QString LCase(const QString &String)
{
    return String.toLower();
}

int Len(const QString &String)
{
    return int(String.size());
}

QString Left(const QString &String, int Length)
{
    if (Length < 0)
        invalidArgument("Left", "Length", Length);
    return String.left(Length);
}

QString Right(const QString &String, int Length)
{
    if (Length < 0)
        invalidArgument("Right", "Length", Length);
    return String.right(Length);
}

QString Mid(const QString &String, int Start)
{
    if (Start < 1)
        invalidArgument("Mid", "Start", Start);
    return String.mid(qMin(qsizetype(Start - 1), String.size()));
}

QString Mid(const QString &String, int Start, int Length)
{
    if (Length < 0)
        invalidArgument("Mid", "Length", Length);
    return Mid(String, Start).left(Length);
}

int InStr(int Start, const QString &String1, const QString &String2, CompareMethod Compare)
{
    if (Start < 1)
        invalidArgument("InStr", "Start", Start);
    if (Start > String1.size())
        return 0;
    if (String2.isEmpty())
        return Start;
    return int(String1.indexOf(String2, Start - 1, sensitivity(Compare))) + 1;
}

int InStr(const QString &String1, const QString &String2, CompareMethod Compare)
{
    return InStr(1, String1, String2, Compare);
}

QStringList Split(const QString &Expression, const QString &Delimiter, int Limit, CompareMethod Compare)
{
    if (Limit < -1)
        invalidArgument("Split", "Limit", Limit);
    QStringList pieces;
    if (Expression.isEmpty() || Limit == 0)
        return pieces;
    if (Delimiter.isEmpty()) {
        pieces.append(Expression);
        return pieces;
    }
    qsizetype start = 0;
    while (Limit == -1 || pieces.size() < Limit - 1) {
        const qsizetype found = Expression.indexOf(Delimiter, start, sensitivity(Compare));
        if (found < 0)
            break;
        pieces.append(Expression.mid(start, found - start));
        start = found + Delimiter.size();
    }
    pieces.append(Expression.mid(start));
    return pieces;
}

QString Join(const QStringList &SourceArray, const QString &Delimiter)
{
    return SourceArray.join(Delimiter);
}

QStringList Filter(const QStringList &SourceArray, const QString &Match, bool Include, CompareMethod Compare)
{
    QStringList kept;
    for (const QString &entry : SourceArray) {
        if (entry.contains(Match, sensitivity(Compare)) == Include)
            kept.append(entry);
    }
    return kept;
}

QString Replace(const QString &Expression, const QString &Find, const QString &ReplaceWith, int Start, int Count,
                CompareMethod Compare)
{
    if (Start < 1)
        invalidArgument("Replace", "Start", Start);
    if (Count < -1)
        invalidArgument("Replace", "Count", Count);
    const QString text = Mid(Expression, Start);
    if (Find.isEmpty() || Count == 0)
        return text;
    QString result;
    qsizetype from = 0;
    int replaced = 0;
    while (Count == -1 || replaced < Count) {
        const qsizetype found = text.indexOf(Find, from, sensitivity(Compare));
        if (found < 0)
            break;
        result += QStringView(text).mid(from, found - from);
        result += ReplaceWith;
        from = found + Find.size();
        ++replaced;
    }
    result += QStringView(text).mid(from);
    return result;
}

QString Space(int Number)
{
    if (Number < 0)
        invalidArgument("Space", "Number", Number);
    return QString(Number, QLatin1Char(' '));
}

} // namespace PanelKestrin
