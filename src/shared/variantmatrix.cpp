#include <PanelKestrin/variantmatrix.h>

#include <PanelKestrin/runtimeerror.h>

#include <climits>
#include <new>
#include <utility>

namespace PanelKestrin {

namespace {
const QString kSource = QStringLiteral("VariantMatrix");

// Rows per block, a power of two so that an element's block is a shift away. A block is what a
// first write into shared storage copies: 512 rows of 8 fields are 128 KB.
constexpr int kBlockShift = 9;
constexpr int kBlockRows = 1 << kBlockShift;

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

// Checks that a matrix with these bounds can be counted. Counts and offsets are ints, so a
// dimension or a whole matrix beyond what an int counts is an array that cannot be made (it
// would need tens of gigabytes of variants in any case).
void checkCounts(int lower1, int upper1, int lower2, int upper2)
{
    const qint64 n1 = span(lower1, upper1), n2 = span(lower2, upper2);
    if (n1 > INT_MAX || n2 > INT_MAX || (n1 > 0 && n2 > INT_MAX / n1))
        raiseOutOfMemory(n1, n2);
}

// The blocks are allocated one by one, each small enough to be granted on its own. Asking once
// for all the new elements first turns bounds that memory cannot hold into an out-of-memory
// error, rather than into a process the system stops while the blocks are being filled.
void checkAllocatable(qint64 elements, qint64 count1, qint64 count2)
{
    if (elements <= 0)
        return;
    void *whole = ::operator new(std::size_t(elements) * sizeof(QVariant), std::nothrow);
    if (!whole)
        raiseOutOfMemory(count1, count2);
    ::operator delete(whole);
}

// Blocks holding rows rows of fields fields: none when either is 0.
int blockCount(int fields, int rows)
{
    return fields == 0 ? 0 : int((qint64(rows) + kBlockRows - 1) >> kBlockShift);
}

// Rows of block `block` in a matrix of rows rows: kBlockRows, fewer in the last block.
int rowsInBlock(int block, int rows)
{
    return int(qMin<qint64>(kBlockRows, qint64(rows) - (qint64(block) << kBlockShift)));
}

// An empty block with room for exactly size elements (std::bad_alloc when there is none), so
// that filling it cannot fail.
QVector<QVariant> reservedBlock(qsizetype size)
{
    QVector<QVariant> block;
    block.reserve(size);
    if (block.capacity() < size)
        throw std::bad_alloc();
    return block;
}

// A block of size Empty elements.
QVector<QVariant> emptyBlock(qsizetype size)
{
    QVector<QVariant> block = reservedBlock(size);
    block.resize(size);
    return block;
}

// Position of field i of row r inside the row's block, both counted from 0.
qsizetype inBlock(int i, int r, int fields)
{
    return qsizetype(r & (kBlockRows - 1)) * fields + i;
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

void VariantMatrix::checkIndex(int i, int j) const
{
    checkAssigned();
    if (i < m_lower1 || i > m_upper1 || j < m_lower2 || j > m_upper2)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: (%1, %2) outside (%3 To %4, %5 To %6)")
                               .arg(i).arg(j).arg(m_lower1).arg(m_upper1).arg(m_lower2).arg(m_upper2),
                           kSource);
}

const QVariant &VariantMatrix::operator()(int i, int j) const
{
    checkIndex(i, j);
    const int r = j - m_lower2;
    return m_blocks.at(r >> kBlockShift).at(inBlock(i - m_lower1, r, m_upper1 - m_lower1 + 1));
}

QVariant &VariantMatrix::operator()(int i, int j)
{
    checkIndex(i, j);
    const int r = j - m_lower2;
    // Non-const indexing copies the table and then the block when another matrix shares them.
    return m_blocks[r >> kBlockShift][inBlock(i - m_lower1, r, m_upper1 - m_lower1 + 1)];
}

void VariantMatrix::setValue(int i, int j, const QVariant &v)
{
    const QVariant &held = std::as_const(*this)(i, j);
    if (held.metaType() == v.metaType() && held == v)
        return;
    (*this)(i, j) = v;
}

void VariantMatrix::redim(int lower1, int upper1, int lower2, int upper2)
{
    checkBounds(lower1, upper1);
    checkBounds(lower2, upper2);
    checkCounts(lower1, upper1, lower2, upper2);
    const int fields = int(span(lower1, upper1)), rows = int(span(lower2, upper2));
    VariantMatrix fresh; // grown from no rows: the blocks and memory checks of any growth
    try {
        fresh.growRows(fields, 0, rows);
    } catch (const std::bad_alloc &) {
        raiseOutOfMemory(fields, rows);
    }
    m_assigned = true;
    m_lower1 = lower1;
    m_upper1 = upper1;
    m_lower2 = lower2;
    m_upper2 = upper2;
    m_blocks = std::move(fresh.m_blocks);
}

void VariantMatrix::redimPreserve(int upper2)
{
    checkAssigned();
    checkBounds(m_lower2, upper2);
    checkCounts(m_lower1, m_upper1, m_lower2, upper2);
    const int fields = count(1), oldRows = count(2), rows = int(span(m_lower2, upper2));
    try {
        if (rows > oldRows)
            growRows(fields, oldRows, rows);
        else if (rows < oldRows)
            shrinkRows(fields, rows);
    } catch (const std::bad_alloc &) {
        raiseOutOfMemory(fields, rows);
    }
    m_upper2 = upper2;
}

// Empty rows up to rows: new blocks after the last one, and the last one filled up to its
// share of them. A failure (std::bad_alloc) leaves the blocks holding oldRows rows.
void VariantMatrix::growRows(int fields, int oldRows, int rows)
{
    checkAllocatable(qint64(rows - oldRows) * fields, fields, rows);
    const int oldCount = blockCount(fields, oldRows), count = blockCount(fields, rows);
    QVector<Block> added;
    added.reserve(count - oldCount);
    for (int b = oldCount; b < count; ++b)
        added.append(emptyBlock(qsizetype(rowsInBlock(b, rows)) * fields));
    // Appending allocates before it moves anything, so it either happens whole or not at all.
    m_blocks.append(std::move(added));
    if (oldCount == 0)
        return;
    const int last = oldCount - 1;
    const qsizetype size = qsizetype(rowsInBlock(last, rows)) * fields;
    if (m_blocks.at(last).size() == size)
        return;
    try {
        m_blocks[last].resize(size); // in place when nothing else shares the block
    } catch (const std::bad_alloc &) {
        if (m_blocks.size() != oldCount)
            m_blocks.resize(oldCount); // drops what was appended: the table is this matrix's own
        throw;
    }
}

// Rows down to rows: trailing blocks dropped, the new last block cut to its rows. A failure
// (std::bad_alloc) leaves the blocks as they were.
void VariantMatrix::shrinkRows(int fields, int rows)
{
    const int count = blockCount(fields, rows);
    if (count == 0) {
        m_blocks = QVector<Block>();
        return;
    }
    const int last = count - 1;
    const qsizetype size = qsizetype(rowsInBlock(last, rows)) * fields;
    const Block &source = m_blocks.at(last);
    const bool cut = source.size() != size;
    // The block is cut in place when it is this matrix's own and keeps at least half its room.
    // Otherwise its kept part is copied into a block of its size first, the one step that can
    // fail: a copy shares it, or a few rows read into room for hundreds give the rest back.
    const bool inPlace = m_blocks.isDetached() && source.isDetached() && size >= source.capacity() / 2;
    Block kept;
    if (cut && !inPlace) {
        kept = reservedBlock(size);
        for (qsizetype k = 0; k < size; ++k)
            kept.append(source.at(k)); // within the room reserved: cannot fail
    }
    m_blocks.resize(count);
    if (!cut)
        return;
    if (inPlace)
        m_blocks[last].resize(size);
    else
        m_blocks[last] = std::move(kept);
}

void VariantMatrix::erase()
{
    *this = VariantMatrix();
}

bool VariantMatrix::operator==(const VariantMatrix &other) const
{
    if (m_assigned != other.m_assigned) return false;
    if (!m_assigned) return true;
    // Equal bounds give equal block sizes, so the tables compare block by block; a block two
    // matrices share compares equal without looking at its elements.
    return m_lower1 == other.m_lower1 && m_upper1 == other.m_upper1 && m_lower2 == other.m_lower2
           && m_upper2 == other.m_upper2 && m_blocks == other.m_blocks;
}

} // namespace PanelKestrin
