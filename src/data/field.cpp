#include <PanelKestrin/field.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/variant.h>

#include "data/dataerror_p.h"
#include "data/recordset_p.h"

#include <QCoreApplication>

namespace PanelKestrin {

namespace {

const QString kFieldSource = QStringLiteral("PanelKestrin.Field");
const QString kFieldsSource = QStringLiteral("PanelKestrin.Fields");

// The open recordset behind a handle; raises 3704 once it is closed or gone.
const RecordsetPrivate &openRecordset(const Recordset *recordset, const QString &source)
{
    if (!recordset || !recordset->State())
        raiseDataError(ErrObjectClosed,
                       QCoreApplication::translate("PanelKestrin::Recordset", "The field's recordset is closed."),
                       source);
    return *RecordsetAccess::get(recordset);
}

} // namespace

Field::Field(const Recordset *recordset, int index) : m_recordset(recordset), m_index(index) {}

Fields::Fields(const Recordset *recordset) : m_recordset(recordset) {}

qint32 Fields::Count() const
{
    return qint32(openRecordset(m_recordset, kFieldsSource).columns.size());
}

Field Fields::Item(const QVariant &IndexOrName) const
{
    const RecordsetPrivate &rs = openRecordset(m_recordset, kFieldsSource);
    return Field(m_recordset, rs.columnIndex(IndexOrName, kFieldsSource));
}

namespace {

const ColumnInfo &column(const QPointer<const Recordset> &recordset, int index)
{
    const RecordsetPrivate &rs = openRecordset(recordset, kFieldSource);
    if (index >= rs.columns.size()) // the recordset was run again with fewer columns
        raiseDataError(ErrItemNotFound,
                       QCoreApplication::translate("PanelKestrin::Recordset",
                                                   "Field %1 is no longer in the recordset.").arg(index),
                       kFieldSource);
    return rs.columns.at(index);
}

} // namespace

QString Field::Name() const { return column(m_recordset, m_index).Name; }
qint32 Field::Type() const { return column(m_recordset, m_index).Type; }
qint32 Field::DefinedSize() const { return column(m_recordset, m_index).DefinedSize; }
qint32 Field::Precision() const { return column(m_recordset, m_index).Precision; }
qint32 Field::NumericScale() const { return column(m_recordset, m_index).NumericScale; }
qint32 Field::Attributes() const { return column(m_recordset, m_index).Attributes; }

QVariant Field::Value() const
{
    const ColumnInfo &c = column(m_recordset, m_index);
    RecordsetAccess::checkCurrent(
        m_recordset, QCoreApplication::translate("PanelKestrin::Recordset", "Reading field \"%1\"").arg(c.Name));
    const RecordsetPrivate &rs = *RecordsetAccess::get(m_recordset);
    return rs.rows(m_index, rs.position - 1);
}

qint32 Field::ActualSize() const
{
    const QVariant v = Value();
    if (isNull(v))
        return -1;
    switch (v.metaType().id()) {
    case QMetaType::QString: return qint32(v.toString().size());
    case QMetaType::QByteArray: return qint32(v.toByteArray().size());
    default: return DefinedSize();
    }
}

} // namespace PanelKestrin
