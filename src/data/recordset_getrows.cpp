// Recordset::GetRows: copying rows out into a (field, row) matrix.
#include <PanelKestrin/recordset.h>

#include "data/dataerror_p.h"
#include "data/recordset_p.h"

#include <PanelKestrin/variant.h>

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Recordset");

[[noreturn]] void badArgument(const QString &detail)
{
    raiseDataError(ErrBadArguments, detail, kSource);
}

bool isIntegerVariant(const QVariant &v)
{
    return isNumberVariant(v) && v.metaType().id() != QMetaType::Double && v.metaType().id() != QMetaType::Float;
}

} // namespace

int Recordset::startRow(const QVariant &Start) const
{
    enum { Current = -1 };
    int start = Current;
    if (isIntegerVariant(Start)) {
        const qlonglong code = Start.toLongLong();
        if (code == BookmarkFirst)
            start = 1;
        else if (code == BookmarkLast)
            start = d->rowCount;
        else if (code != BookmarkCurrent)
            badArgument(tr("GetRows start %1 is none of 0 (current), 1 (first), 2 (last) or a bookmark.").arg(code));
    } else if (isNumberVariant(Start)) {
        const double bookmark = Start.toDouble();
        if (d->rowCount > 0 && (std::floor(bookmark) != bookmark || bookmark < 1 || bookmark > d->rowCount))
            badArgument(tr("GetRows start %1 is not the bookmark of a record of this recordset.").arg(bookmark));
        start = int(bookmark);
    } else if (!isEmpty(Start)) {
        badArgument(tr("GetRows start \"%1\" is none of 0, 1, 2 or a bookmark.").arg(Start.toString()));
    }
    if (d->rowCount == 0)
        raiseDataError(ErrNoCurrentRecord, tr("GetRows: the recordset has no records."), kSource);
    if (start == Current) {
        checkCurrent(tr("GetRows from the current record"));
        start = d->position;
    }
    return start;
}

QVector<int> Recordset::fieldList(const QVariant &Fields) const
{
    QVector<int> indices;
    if (isEmpty(Fields))
        return indices;
    QVariantList items;
    const int id = Fields.metaType().id();
    if (id == QMetaType::QVariantList)
        items = Fields.toList();
    else if (id == QMetaType::QStringList)
        for (const QString &name : Fields.toStringList())
            items.append(name);
    else if (id == QMetaType::QString || isNumberVariant(Fields))
        items.append(Fields);
    else
        badArgument(tr("GetRows fields must be a field name, a position or a list of them."));
    if (items.isEmpty())
        badArgument(tr("GetRows was given an empty list of fields."));
    for (const QVariant &item : std::as_const(items))
        indices.append(d->columnIndex(item, kSource));
    return indices;
}

VariantMatrix Recordset::GetRows(qint32 Rows, const QVariant &Start, const QVariant &Fields)
{
    checkOpen();
    if (Rows < -1 || Rows == 0)
        badArgument(tr("GetRows row count %1 is neither -1 (all remaining) nor a positive number.").arg(Rows));
    QVector<int> fields = fieldList(Fields);
    const int start = startRow(Start);
    const int available = d->rowCount - start + 1;
    const int count = Rows == -1 ? available : qMin(Rows, available);

    const int fieldCount = int(d->columns.size());
    bool allFields = fields.isEmpty();
    if (!allFields && fields.size() == fieldCount) {
        allFields = true;
        for (int i = 0; i < fieldCount && allFields; ++i)
            allFields = fields.at(i) == i;
    }
    VariantMatrix result;
    if (allFields && start == 1 && count == d->rowCount) {
        result = d->rows; // shares the rows already held
    } else {
        if (allFields) {
            fields.resize(fieldCount);
            for (int i = 0; i < fieldCount; ++i)
                fields[i] = i;
        }
        result.redim(0, int(fields.size()) - 1, 0, count - 1);
        for (int r = 0; r < count; ++r)
            for (int f = 0; f < fields.size(); ++f)
                result(f, r) = d->rows(fields.at(f), start - 1 + r);
    }
    move(start + count, ReasonMove);
    return result;
}

} // namespace PanelKestrin
