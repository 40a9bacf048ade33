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
    void redimPreserveAcrossBlocks_data();
    void redimPreserveAcrossBlocks();
    void writeNearBlockEdgeLeavesCopiesIntact_data();
    void writeNearBlockEdgeLeavesCopiesIntact();
    void copiesCompareByContent_data();
    void copiesCompareByContent();
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

// Large matrices: their rows span many storage blocks whatever the block size (hundreds to a
// few thousand rows), so growing, cutting and writing meet block edges.
namespace {
constexpr int kFields = 3; // fields 1 To 3

QVariant fillValue(int i, int j)
{
    return QVariant(j * 10 + i);
}

// Fields 1 To 3, rows lower2 To lower2 + rows - 1, each element fillValue(i, j).
VariantMatrix filledRows(int lower2, int rows)
{
    VariantMatrix m(1, kFields, lower2, lower2 + rows - 1);
    for (int j = lower2; j < lower2 + rows; ++j)
        for (int i = 1; i <= kFields; ++i)
            m(i, j) = fillValue(i, j);
    return m;
}

// The first element of rows lower2 To lower2 + rows - 1 that is not what it should be: its fill
// value in the first `filled` rows, Empty after them; "" when all are right.
QString firstWrongElement(const VariantMatrix &m, int lower2, int rows, int filled)
{
    for (int j = lower2; j < lower2 + rows; ++j) {
        for (int i = 1; i <= kFields; ++i) {
            const QVariant expected = j < lower2 + filled ? fillValue(i, j) : QVariant();
            const QVariant &held = m(i, j);
            if (held.metaType() != expected.metaType() || held != expected)
                return QStringLiteral("(%1, %2) holds %3").arg(i).arg(j).arg(held.toString());
        }
    }
    return QString();
}
} // namespace

void tst_variantmatrix::redimPreserveAcrossBlocks_data()
{
    QTest::addColumn<int>("lower2");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("resizes"); // row counts, one redimPreserve each
    QTest::addColumn<bool>("copied");        // a copy taken first must keep every row
    QTest::newRow("grow from part of a block") << 0 << 300 << QList<int>{2600} << false;
    QTest::newRow("grow row by row over an edge") << 1 << 1020 << QList<int>{1021, 1022, 1023, 1024, 1025, 1026} << true;
    QTest::newRow("shrink to inside the first block") << 1 << 2600 << QList<int>{7} << false;
    QTest::newRow("shrink to a block edge and below") << 0 << 2600 << QList<int>{2048, 1024, 1023, 512, 511, 256, 255}
                                                      << true;
    QTest::newRow("shrink to no rows, grow again") << 1 << 1500 << QList<int>{0, 1500} << true;
    QTest::newRow("cut rows come back Empty") << 0 << 2600 << QList<int>{700, 2600} << false;
    QTest::newRow("cut rows of a copy come back Empty") << 1 << 2600 << QList<int>{1100, 1900} << true;
    QTest::newRow("negative lower bound") << -1000 << 1200 << QList<int>{3000, 600} << true;
}

void tst_variantmatrix::redimPreserveAcrossBlocks()
{
    QFETCH(int, lower2);
    QFETCH(int, rows);
    QFETCH(QList<int>, resizes);
    QFETCH(bool, copied);
    VariantMatrix m = filledRows(lower2, rows);
    const VariantMatrix copy = copied ? m : VariantMatrix();
    int filled = rows; // rows still holding what they were filled with
    for (int count : std::as_const(resizes)) {
        m.redimPreserve(lower2 + count - 1);
        filled = qMin(filled, count);
        QCOMPARE(m.UBound(2), lower2 + count - 1);
        QCOMPARE(firstWrongElement(m, lower2, count, filled), QString());
        QCOMPARE(errorNumberOf([&] { m.value(1, lower2 + count); }), 9);
    }
    if (copied)
        QCOMPARE(firstWrongElement(copy, lower2, rows, rows), QString());
}

void tst_variantmatrix::writeNearBlockEdgeLeavesCopiesIntact_data()
{
    QTest::addColumn<int>("lower2");
    QTest::addColumn<int>("row"); // counted from the first row
    for (int lower2 : {0, 1})
        for (int row : {0, 255, 256, 511, 512, 1023, 1024, 2047, 2048, 2499})
            QTest::addRow("lower bound %d, row %d", lower2, row) << lower2 << row;
}

void tst_variantmatrix::writeNearBlockEdgeLeavesCopiesIntact()
{
    QFETCH(int, lower2);
    QFETCH(int, row);
    const int rows = 2500;
    const int j = lower2 + row;
    const VariantMatrix original = filledRows(lower2, rows);
    VariantMatrix copy = original;
    const void *shared = original.storageId();

    copy.setValue(2, j, fillValue(2, j));
    QCOMPARE(copy.storageId(), shared);
    copy.setValue(2, j, QStringLiteral("written"));
    QVERIFY(copy.storageId() != shared);
    QCOMPARE(original.storageId(), shared);
    QCOMPARE(firstWrongElement(original, lower2, rows, rows), QString());
    QCOMPARE(copy(2, j), QVariant(QStringLiteral("written")));
    copy.setValue(2, j, fillValue(2, j));
    QCOMPARE(firstWrongElement(copy, lower2, rows, rows), QString());

    // Writing through the element reference parts a further copy the same way.
    VariantMatrix second = copy;
    const void *copyId = copy.storageId();
    second(kFields, j) = Null();
    QVERIFY(second.storageId() != copyId);
    QCOMPARE(copy.storageId(), copyId);
    QCOMPARE(copy(kFields, j), fillValue(kFields, j));
}

void tst_variantmatrix::copiesCompareByContent_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("equal");
    QTest::newRow("untouched") << Change([](VariantMatrix &) {}) << true;
    QTest::newRow("an element read for writing") << Change([](VariantMatrix &m) { m(1, 1700) = m.value(1, 1700); })
                                                 << true;
    QTest::newRow("an element changed") << Change([](VariantMatrix &m) { m(3, 1999) = 0; }) << false;
    QTest::newRow("an element changed back") << Change([](VariantMatrix &m) {
        m(3, 1999) = 0;
        m(3, 1999) = fillValue(3, 1999);
    }) << true;
    QTest::newRow("built again") << Change([](VariantMatrix &m) { m = filledRows(0, 2000); }) << true;
    QTest::newRow("a row more") << Change([](VariantMatrix &m) { m.redimPreserve(2000); }) << false;
    QTest::newRow("a row more, then cut") << Change([](VariantMatrix &m) {
        m.redimPreserve(2000);
        m.redimPreserve(1999);
    }) << true;
    QTest::newRow("the same elements, other bounds") << Change([](VariantMatrix &m) {
        VariantMatrix moved(1, kFields, 1, 2000);
        for (int j = 0; j < 2000; ++j)
            for (int i = 1; i <= kFields; ++i)
                moved(i, j + 1) = m.value(i, j);
        m = moved;
    }) << false;
}

void tst_variantmatrix::copiesCompareByContent()
{
    QFETCH(Change, change);
    QFETCH(bool, equal);
    const VariantMatrix original = filledRows(0, 2000);
    VariantMatrix copy = original;
    change(copy);
    QCOMPARE(copy == original, equal);
    QCOMPARE(original == copy, equal);
    QCOMPARE(firstWrongElement(original, 0, 2000, 2000), QString());
}

QTEST_GUILESS_MAIN(tst_variantmatrix)
#include "tst_variantmatrix.moc"
