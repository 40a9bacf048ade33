#include <PanelKestrin/variantmatrix.h>

#include <PanelKestrin/runtimeerror.h>

#include <climits>
#include <new>

namespace PanelKestrin {

namespace {
const QString kSource = QStringLiteral("VariantMatrix");

// Elements from lower to upper, counted wide so that no pair of bounds overflows.
qint64 span(int lower, int upper)
{
    return qint64(upper) - lower + 1;
}

void checkBounds(int lower, int upper)
{
    if (span(lower, upper) < 0)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: bounds %1 To %2").arg(lower).arg(upper),
                           kSource);
}

[[noreturn]] void raiseOutOfMemory(qint64 count1, qint64 count2)
{
    throw RuntimeError(ErrOutOfMemory,
                       QStringLiteral("Out of memory: an array of %1 by %2 elements").arg(count1).arg(count2),
                       kSource);
}

// The elements of a matrix with these bounds. Counts and offsets are ints, so a dimension or a
// whole matrix beyond what an int counts is an array that cannot be made (it would need tens of
// gigabytes of variants in any case).
qsizetype elementCount(int lower1, int upper1, int lower2, int upper2)
{
    const qint64 n1 = span(lower1, upper1), n2 = span(lower2, upper2);
    if (n1 > INT_MAX || n2 > INT_MAX || (n1 > 0 && n2 > INT_MAX / n1))
        raiseOutOfMemory(n1, n2);
    return qsizetype(n1 * n2);
}

// Gives data `count` elements, new ones Empty; a failed allocation leaves data as it was.
void resizeStorage(QVector<QVariant> &data, qsizetype count, qint64 count1, qint64 count2)
{
    try {
        data.resize(count);
    } catch (const std::bad_alloc &) {
        raiseOutOfMemory(count1, count2);
    }
}
} // namespace

VariantMatrix::VariantMatrix(int lower1, int upper1, int lower2, int upper2)
{
    redim(lower1, upper1, lower2, upper2);
}

void VariantMatrix::checkAssigned() const
{
    if (!m_assigned)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: the array has no bounds"), kSource);
}

int VariantMatrix::LBound(int dimension) const
{
    checkAssigned();
    if (dimension == 1) return m_lower1;
    if (dimension == 2) return m_lower2;
    throw RuntimeError(ErrSubscriptOutOfRange,
                       QStringLiteral("Subscript out of range: dimension %1 of 2").arg(dimension), kSource);
}

int VariantMatrix::UBound(int dimension) const
{
    checkAssigned();
    if (dimension == 1) return m_upper1;
    if (dimension == 2) return m_upper2;
    throw RuntimeError(ErrSubscriptOutOfRange,
                       QStringLiteral("Subscript out of range: dimension %1 of 2").arg(dimension), kSource);
}

int VariantMatrix::count(int dimension) const
{
    if (!m_assigned) return 0;
    return int(dimension == 1 ? span(m_lower1, m_upper1) : span(m_lower2, m_upper2));
}

int VariantMatrix::offset(int i, int j) const
{
    checkAssigned();
    if (i < m_lower1 || i > m_upper1 || j < m_lower2 || j > m_upper2)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: (%1, %2) outside (%3 To %4, %5 To %6)")
                               .arg(i).arg(j).arg(m_lower1).arg(m_upper1).arg(m_lower2).arg(m_upper2),
                           kSource);
    return qsizetype(j - m_lower2) * count(1) + (i - m_lower1);
}

const QVariant &VariantMatrix::operator()(int i, int j) const
{
    return m_data.at(offset(i, j));
}

QVariant &VariantMatrix::operator()(int i, int j)
{
    return m_data[offset(i, j)];
}

void VariantMatrix::setValue(int i, int j, const QVariant &v)
{
    const QVariant &held = m_data.at(offset(i, j));
    if (held.metaType() == v.metaType() && held == v)
        return;
    m_data[offset(i, j)] = v;
}

void VariantMatrix::redim(int lower1, int upper1, int lower2, int upper2)
{
    checkBounds(lower1, upper1);
    checkBounds(lower2, upper2);
    QVector<QVariant> data;
    resizeStorage(data, elementCount(lower1, upper1, lower2, upper2), span(lower1, upper1), span(lower2, upper2));
    m_assigned = true;
    m_lower1 = lower1;
    m_upper1 = upper1;
    m_lower2 = lower2;
    m_upper2 = upper2;
    m_data = std::move(data);
}

void VariantMatrix::redimPreserve(int upper2)
{
    checkAssigned();
    checkBounds(m_lower2, upper2);
    resizeStorage(m_data, elementCount(m_lower1, m_upper1, m_lower2, upper2), count(1), span(m_lower2, upper2));
    m_upper2 = upper2;
}

void VariantMatrix::erase()
{
    *this = VariantMatrix();
}

bool VariantMatrix::operator==(const VariantMatrix &other) const
{
    if (m_assigned != other.m_assigned) return false;
    if (!m_assigned) return true;
    return m_lower1 == other.m_lower1 && m_upper1 == other.m_upper1 && m_lower2 == other.m_lower2
           && m_upper2 == other.m_upper2 && m_data == other.m_data;
}

} // namespace PanelKestrin
