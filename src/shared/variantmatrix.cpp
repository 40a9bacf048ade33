#include <PanelKestrin/variantmatrix.h>

#include <PanelKestrin/runtimeerror.h>

namespace PanelKestrin {

namespace {
const QString kSource = QStringLiteral("VariantMatrix");

void checkBounds(int lower, int upper)
{
    if (upper < lower - 1)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: bounds %1 To %2").arg(lower).arg(upper),
                           kSource);
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
    return dimension == 1 ? m_upper1 - m_lower1 + 1 : m_upper2 - m_lower2 + 1;
}

int VariantMatrix::offset(int i, int j) const
{
    checkAssigned();
    if (i < m_lower1 || i > m_upper1 || j < m_lower2 || j > m_upper2)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: (%1, %2) outside (%3 To %4, %5 To %6)")
                               .arg(i).arg(j).arg(m_lower1).arg(m_upper1).arg(m_lower2).arg(m_upper2),
                           kSource);
    return (j - m_lower2) * (m_upper1 - m_lower1 + 1) + (i - m_lower1);
}

const QVariant &VariantMatrix::operator()(int i, int j) const
{
    return m_data.at(offset(i, j));
}

QVariant &VariantMatrix::operator()(int i, int j)
{
    return m_data[offset(i, j)];
}

void VariantMatrix::redim(int lower1, int upper1, int lower2, int upper2)
{
    checkBounds(lower1, upper1);
    checkBounds(lower2, upper2);
    m_assigned = true;
    m_lower1 = lower1;
    m_upper1 = upper1;
    m_lower2 = lower2;
    m_upper2 = upper2;
    m_data = QVector<QVariant>(qsizetype(upper1 - lower1 + 1) * (upper2 - lower2 + 1));
}

void VariantMatrix::redimPreserve(int upper2)
{
    checkAssigned();
    checkBounds(m_lower2, upper2);
    m_upper2 = upper2;
    m_data.resize(qsizetype(m_upper1 - m_lower1 + 1) * (upper2 - m_lower2 + 1));
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
