#include <PanelKestrin/variant.h>
#include <PanelKestrin/variantmatrix.h>

#include "errornumber.h"

#include <QtTest>

#include <climits>

using namespace PanelKestrin;

class tst_variantmatrix : public QObject
{
    Q_OBJECT

private slots:
    void subscriptErrors_data();
    void subscriptErrors();
    void redimPreserveKeepsContents();
    void emptyDimensionGrows();
    void hugeBoundsRaiseOutOfMemory_data();
    void hugeBoundsRaiseOutOfMemory();
    void rewritingAnEqualValueKeepsCopiesShared_data();
    void rewritingAnEqualValueKeepsCopiesShared();
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

namespace {
using Change = std::function<void(VariantMatrix &)>;

VariantMatrix filled(int upper1, int upper2)
{
    VariantMatrix m(0, upper1, 0, upper2);
    m(upper1, upper2) = 42;
    return m;
}
} // namespace
Q_DECLARE_METATYPE(Change)

void tst_variantmatrix::hugeBoundsRaiseOutOfMemory_data()
{
    QTest::addColumn<VariantMatrix>("start");
    QTest::addColumn<Change>("change");
    QTest::newRow("99999 by 99999") << VariantMatrix()
                                    << Change([](VariantMatrix &m) { m = VariantMatrix(0, 99999, 0, 99999); });
    QTest::newRow("more fields than an int counts, no rows")
        << VariantMatrix() << Change([](VariantMatrix &m) { m.redim(0, INT_MAX, 0, -1); });
    QTest::newRow("the whole int range") << VariantMatrix()
                                         << Change([](VariantMatrix &m) { m.redim(0, 0, INT_MIN, INT_MAX); });
    QTest::newRow("product past an int") << VariantMatrix()
                                         << Change([](VariantMatrix &m) { m.redim(1, 65536, 1, 32768); });
    QTest::newRow("redim keeps the old array") << filled(1, 1)
                                               << Change([](VariantMatrix &m) { m.redim(0, 99999, 0, 99999); });
    QTest::newRow("redimPreserve keeps the old rows") << filled(9, 0)
                                                      << Change([](VariantMatrix &m) { m.redimPreserve(INT_MAX - 1); });
}

void tst_variantmatrix::hugeBoundsRaiseOutOfMemory()
{
    QFETCH(VariantMatrix, start);
    QFETCH(Change, change);
    VariantMatrix m = start;
    QCOMPARE(errorNumberOf([&] { change(m); }), 7);
    QVERIFY(m == start);
}

void tst_variantmatrix::rewritingAnEqualValueKeepsCopiesShared_data()
{
    QTest::addColumn<QVariant>("held");
    QTest::addColumn<QVariant>("written");
    QTest::addColumn<bool>("shared");
    QTest::newRow("same text") << QVariant(QStringLiteral("A1")) << QVariant(QStringLiteral("A1")) << true;
    QTest::newRow("same number") << QVariant(12.5) << QVariant(12.5) << true;
    QTest::newRow("Null over Null") << QVariant::fromValue(nullptr) << QVariant::fromValue(nullptr) << true;
    QTest::newRow("other text") << QVariant(QStringLiteral("A1")) << QVariant(QStringLiteral("A2")) << false;
    // Equal as numbers but of another type: the element's type changes, so it is a write.
    QTest::newRow("integer over double") << QVariant(12.0) << QVariant(12) << false;
    QTest::newRow("text over Null") << QVariant::fromValue(nullptr) << QVariant(QString()) << false;
}

void tst_variantmatrix::rewritingAnEqualValueKeepsCopiesShared()
{
    QFETCH(QVariant, held);
    QFETCH(QVariant, written);
    QFETCH(bool, shared);
    VariantMatrix original(0, 1, 0, 2);
    original(1, 2) = held;
    VariantMatrix copy = original;
    copy.setValue(1, 2, written);
    QCOMPARE(copy.storageId() == original.storageId(), shared);
    QCOMPARE(copy(1, 2).metaType(), written.metaType());
    QCOMPARE(original(1, 2).metaType(), held.metaType());
}

QTEST_GUILESS_MAIN(tst_variantmatrix)
#include "tst_variantmatrix.moc"
