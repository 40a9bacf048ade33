#include <PanelKestrin/variant.h>
#include <PanelKestrin/variantmatrix.h>

#include "errornumber.h"

#include <QtTest>

using namespace PanelKestrin;

class tst_variantmatrix : public QObject
{
    Q_OBJECT

private slots:
    void bounds();
    void subscriptErrors_data();
    void subscriptErrors();
    void redimPreserveKeepsContents();
    void emptyDimensionGrows();
};

void tst_variantmatrix::bounds()
{
    const VariantMatrix m(0, 2, 1, 3);
    QCOMPARE(m.LBound(1), 0);
    QCOMPARE(m.UBound(1), 2);
    QCOMPARE(m.LBound(2), 1);
    QCOMPARE(m.UBound(2), 3);
    QCOMPARE(m.count(1), 3);
    QCOMPARE(m.count(2), 3);
    QVERIFY(isEmpty(m(2, 3)));
}

void tst_variantmatrix::subscriptErrors_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("error");
    QTest::newRow("unassigned UBound") << Call([] { VariantMatrix().UBound(1); }) << 9;
    QTest::newRow("unassigned element") << Call([] { VariantMatrix().value(0, 0); }) << 9;
    QTest::newRow("unassigned redimPreserve") << Call([] { VariantMatrix().redimPreserve(3); }) << 9;
    QTest::newRow("first index past upper") << Call([] { VariantMatrix(0, 2, 0, 2).value(3, 0); }) << 9;
    QTest::newRow("second index below lower") << Call([] { VariantMatrix(0, 2, 1, 2).value(0, 0); }) << 9;
    QTest::newRow("write out of range") << Call([] { VariantMatrix(0, 0, 0, 0).setValue(0, 1, 1); }) << 9;
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
    VariantMatrix m(0, 1, 0, 1);
    for (int i = 0; i <= 1; ++i)
        for (int j = 0; j <= 1; ++j)
            m(i, j) = i * 10 + j;
    m.redimPreserve(3);
    QCOMPARE(m.UBound(2), 3);
    for (int i = 0; i <= 1; ++i) {
        for (int j = 0; j <= 1; ++j)
            QCOMPARE(m(i, j), QVariant(i * 10 + j));
        QVERIFY(isEmpty(m(i, 2)));
        QVERIFY(isEmpty(m(i, 3)));
    }
    m.redimPreserve(0);
    QCOMPARE(m(1, 0), QVariant(10));
    QCOMPARE(errorNumberOf([&] { m.value(0, 1); }), 9);
    m.redim(0, 1, 0, 1); // a fresh array: nothing kept
    QVERIFY(isEmpty(m(1, 0)));
}

void tst_variantmatrix::emptyDimensionGrows()
{
    VariantMatrix m(0, 2, 0, -1);
    QCOMPARE(m.UBound(2), -1);
    QCOMPARE(m.count(2), 0);
    QCOMPARE(errorNumberOf([&] { m.value(0, 0); }), 9);
    m.redimPreserve(0);
    m(2, 0) = Null();
    QVERIFY(isNull(m(2, 0)));
    QVERIFY(isEmpty(m(0, 0)));
}

QTEST_GUILESS_MAIN(tst_variantmatrix)
#include "tst_variantmatrix.moc"
