#include <PanelKestrin/strings.h>

#include "errornumber.h"

#include <QtTest>

using namespace PanelKestrin;

class tst_strings : public QObject
{
    Q_OBJECT

private slots:
    void trimming_data();
    void trimming();
    void substrings_data();
    void substrings();
    void inStr_data();
    void inStr();
    void split_data();
    void split();
    void filter();
    void replace_data();
    void replace();
    void invalidArguments_data();
    void invalidArguments();
};

void tst_strings::trimming_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("both");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::newRow("spaces around") << "  a b  " << "a b" << "a b  " << "  a b";
    QTest::newRow("tabs are kept") << " \tx\t " << "\tx\t" << "\tx\t " << " \tx\t";
    QTest::newRow("only spaces") << "   " << "" << "" << "";
}

void tst_strings::trimming()
{
    QFETCH(QString, text);
    QFETCH(QString, both);
    QFETCH(QString, left);
    QFETCH(QString, right);
    QCOMPARE(Trim(text), both);
    QCOMPARE(LTrim(text), left);
    QCOMPARE(RTrim(text), right);
}

void tst_strings::substrings_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("n");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("midFromN");
    QTest::addColumn<QString>("midTwoFromN");
    QTest::newRow("inside") << "abcdef" << 2 << "ab" << "ef" << "bcdef" << "bc";
    QTest::newRow("past the end") << "abc" << 5 << "abc" << "abc" << "" << "";
    QTest::newRow("zero length") << "abc" << 0 << "" << "" << "" << "";
}

void tst_strings::substrings()
{
    QFETCH(QString, text);
    QFETCH(int, n);
    QFETCH(QString, left);
    QFETCH(QString, right);
    QFETCH(QString, midFromN);
    QFETCH(QString, midTwoFromN);
    QCOMPARE(Left(text, n), left);
    QCOMPARE(Right(text, n), right);
    if (n >= 1) {
        QCOMPARE(Mid(text, n), midFromN);
        QCOMPARE(Mid(text, n, 2), midTwoFromN);
    }
}

void tst_strings::inStr_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("string1");
    QTest::addColumn<QString>("string2");
    QTest::addColumn<int>("compare");
    QTest::addColumn<int>("expected");
    QTest::newRow("binary matches case") << 1 << "City,CITY" << "CITY" << int(vbBinaryCompare) << 6;
    QTest::newRow("text ignores case") << 1 << "City,CITY" << "CITY" << int(vbTextCompare) << 1;
    QTest::newRow("empty string2 gives start") << 2 << "abc" << "" << int(vbBinaryCompare) << 2;
    QTest::newRow("start past the end") << 4 << "abc" << "" << int(vbBinaryCompare) << 0;
}

void tst_strings::inStr()
{
    QFETCH(int, start);
    QFETCH(QString, string1);
    QFETCH(QString, string2);
    QFETCH(int, compare);
    QFETCH(int, expected);
    QCOMPARE(InStr(start, string1, string2, CompareMethod(compare)), expected);
    if (start == 1)
        QCOMPARE(InStr(string1, string2, CompareMethod(compare)), expected);
}

void tst_strings::split_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("delimiter");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("compare");
    QTest::addColumn<QStringList>("expected");
    const int binary = vbBinaryCompare;
    QTest::newRow("empty pieces kept") << ",a,,b," << "," << -1 << binary << QStringList{"", "a", "", "b", ""};
    QTest::newRow("empty expression: no pieces") << "" << "," << -1 << binary << QStringList();
    QTest::newRow("empty delimiter: whole text") << "a,b" << "" << -1 << binary << QStringList{"a,b"};
    QTest::newRow("limit keeps the rest") << "a,b,c,d" << "," << 2 << binary << QStringList{"a", "b,c,d"};
    QTest::newRow("limit zero") << "a,b" << "," << 0 << binary << QStringList();
    QTest::newRow("long delimiter") << "a||b||c" << "||" << -1 << binary << QStringList{"a", "b", "c"};
    QTest::newRow("text delimiter case") << "aXbxc" << "x" << -1 << int(vbTextCompare) << QStringList{"a", "b", "c"};
}

void tst_strings::split()
{
    QFETCH(QString, expression);
    QFETCH(QString, delimiter);
    QFETCH(int, limit);
    QFETCH(int, compare);
    QFETCH(QStringList, expected);
    const QStringList pieces = Split(expression, delimiter, limit, CompareMethod(compare));
    QCOMPARE(pieces, expected);
    if (limit != 0 && compare == vbBinaryCompare && !delimiter.isEmpty())
        QCOMPARE(Join(pieces, delimiter), expression);
}

void tst_strings::filter()
{
    const QStringList fields{"CustName", "City", "NAME_2"};
    QCOMPARE(Filter(fields, "Name"), QStringList{"CustName"});
    QCOMPARE(Filter(fields, "name", true, vbTextCompare), (QStringList{"CustName", "NAME_2"}));
    QCOMPARE(Filter(fields, "name", false, vbTextCompare), QStringList{"City"});
}

void tst_strings::replace_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("with");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("compare");
    QTest::addColumn<QString>("expected");
    const int binary = vbBinaryCompare;
    QTest::newRow("all") << "a+b+c" << "+" << "||" << 1 << -1 << binary << "a||b||c";
    QTest::newRow("count") << "a+b+c" << "+" << "||" << 1 << 1 << binary << "a||b+c";
    QTest::newRow("start drops the prefix") << "abcabc" << "b" << "x" << 3 << -1 << binary << "caxc";
    QTest::newRow("empty find") << "abc" << "" << "x" << 2 << -1 << binary << "bc";
    QTest::newRow("no rescan of replacement") << "aa" << "a" << "aa" << 1 << -1 << binary << "aaaa";
    QTest::newRow("text case") << "Like LIKE" << "like" << "~" << 1 << -1 << int(vbTextCompare) << "~ ~";
}

void tst_strings::replace()
{
    QFETCH(QString, expression);
    QFETCH(QString, find);
    QFETCH(QString, with);
    QFETCH(int, start);
    QFETCH(int, count);
    QFETCH(int, compare);
    QFETCH(QString, expected);
    QCOMPARE(Replace(expression, find, with, start, count, CompareMethod(compare)), expected);
}

void tst_strings::invalidArguments_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("error");
    QTest::newRow("Left negative") << Call([] { Left("abc", -1); }) << 5;
    QTest::newRow("Mid start 0") << Call([] { Mid("abc", 0); }) << 5;
    QTest::newRow("Mid negative length") << Call([] { Mid("abc", 1, -1); }) << 5;
    QTest::newRow("InStr start 0") << Call([] { InStr(0, "abc", "a"); }) << 5;
    QTest::newRow("Replace start 0") << Call([] { Replace("abc", "a", "b", 0); }) << 5;
    QTest::newRow("Replace count -2") << Call([] { Replace("abc", "a", "b", 1, -2); }) << 5;
    QTest::newRow("Split limit -2") << Call([] { Split("a b", " ", -2); }) << 5;
    QTest::newRow("Space negative") << Call([] { Space(-1); }) << 5;
}

void tst_strings::invalidArguments()
{
    QFETCH(Call, call);
    QFETCH(int, error);
    QCOMPARE(errorNumberOf(call), error);
}

QTEST_GUILESS_MAIN(tst_strings)
#include "tst_strings.moc"
