#include <PanelKestrin/variant.h>
#include <PanelKestrin/variantmatrix.h>

#include "errornumber.h"

#include <QtTest>

using namespace PanelKestrin;

class tst_variantmatrix : public QObject
{
    Q_OBJECT

private slots:
    void subscriptErrors_data();
    void subscriptErrors();
    void redimPreserveKeepsContents();
    void emptyDimensionGrows();
};

void tst_variantmatrix::subscriptErrors_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("error");
    QTest::newRow("unassigned UBound") << Call([] { VariantMatrix().UBound(1); }) << 9;
    QTest::newRow("unassigned element") << Call([] { VariantMatrix().value(0, 0); }) << 9;
    QTest::newRow("first index past upper") << Call([] { VariantMatrix(0, 2, 0, 2).value(3, 0); }) << 9;
    QTest::newRow("second index below lower") << Call([] { VariantMatrix(0, 2, 1, 2).value(0, 0); }) << 9;
    QTest::newRow("third dimension") << Call([] { VariantMatrix(0, 0, 0, 0).LBound(3); }) << 9;
    QTest::newRow("upper below lower - 1") << Call([] { VariantMatrix(0, -2, 0, 0); }) << 9;
    QTest::newRow("erased") << Call([] {
        VariantMatrix m(0, 1, 0, 1);
        m.erase();
        m.UBound(2);
    }) << 9;
}

void tst_variantmatrix::subscriptErrors()
{
    QFETCH(Call, call);
    QFETCH(int, error);
    QCOMPARE(errorNumberOf(call), error);
}

void tst_variantmatrix::redimPreserveKeepsContents()
{
    VariantMatrix m(0, 1, 1, 2); // fields 0 To 1, rows 1 To 2
    QCOMPARE((QList<int>{m.LBound(1), m.UBound(1), m.LBound(2), m.UBound(2), m.count(1), m.count(2)}),
             (QList<int>{0, 1, 1, 2, 2, 2}));
    for (int i = 0; i <= 1; ++i)
        for (int j = 1; j <= 2; ++j)
            m(i, j) = i * 10 + j;
    m.redimPreserve(4);
    QCOMPARE(m.UBound(2), 4);
    for (int i = 0; i <= 1; ++i) {
        for (int j = 1; j <= 2; ++j)
            QCOMPARE(m(i, j), QVariant(i * 10 + j));
        QVERIFY(isEmpty(m(i, 3)) && isEmpty(m(i, 4)));
    }
    m.redimPreserve(1);
    QCOMPARE(m(1, 1), QVariant(11));
    QCOMPARE(errorNumberOf([&] { m.value(0, 2); }), 9);
    m.redim(0, 1, 1, 2); // a fresh array: nothing kept
    QVERIFY(isEmpty(m(1, 1)));
}

void tst_variantmatrix::emptyDimensionGrows()
{
    VariantMatrix m(0, 2, 0, -1); // fields but no rows yet
    QCOMPARE(m.count(2), 0);
    QCOMPARE(errorNumberOf([&] { m.value(0, 0); }), 9);
    m.redimPreserve(0);
    m(2, 0) = Null();
    QVERIFY(isNull(m(2, 0)));
    QVERIFY(isEmpty(m(0, 0)));
}

QTEST_GUILESS_MAIN(tst_variantmatrix)
#include "tst_variantmatrix.moc"
