// Connection::OpenSchema: the primary-key schema as a recordset.
#include <PanelKestrin/connection.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/variant.h>

#include "data/connection_p.h"
#include "data/dataerror_p.h"
#include "data/recordset_p.h"
#include "data/resultloader_p.h"

#include <QCoreApplication>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Connection");

QString tr(const char *text)
{
    return QCoreApplication::translate("PanelKestrin::Connection", text);
}

// Restriction i as a string; Empty, Null or a missing entry mean "any" (empty string).
QString restriction(const QVariantList &restrictions, int i)
{
    const QVariant v = restrictions.value(i);
    if (isEmpty(v) || isNull(v))
        return QString();
    if (v.metaType().id() != QMetaType::QString)
        raiseDataError(ErrBadArguments,
                       tr("Restriction %1 of the primary-key schema must be a name, Empty or Null.").arg(i + 1),
                       kSource);
    return v.toString();
}

ColumnInfo schemaColumn(const char *name, qint32 type, int length = -1)
{
    ColumnInfo c;
    c.Name = QString::fromLatin1(name);
    setColumnType(c, type, length);
    return c;
}

} // namespace

std::unique_ptr<Recordset> Connection::OpenSchema(qint32 Schema, const QVariantList &Restrictions)
{
    if (!State())
        raiseDataError(ErrObjectClosed, tr("The connection is not open."), kSource);
    if (Schema != SchemaPrimaryKeys)
        raiseDataError(ErrNotCapable,
                       tr("Schema %1 is not available; only schema 28 (primary keys) is.").arg(Schema), kSource);
    if (Restrictions.size() > 3)
        raiseDataError(ErrBadArguments,
                       tr("The primary-key schema takes at most 3 restrictions (catalog, schema, table), not %1.")
                           .arg(Restrictions.size()),
                       kSource);
    const QVector<PrimaryKeyColumn> keys =
        d->metadata->primaryKeys(restriction(Restrictions, 0), restriction(Restrictions, 1), restriction(Restrictions, 2));

    LoadedResult result;
    result.returnedRows = true;
    result.columns = {schemaColumn("TABLE_CATALOG", FieldTypeVarWChar, 128),
                      schemaColumn("TABLE_SCHEMA", FieldTypeVarWChar, 128),
                      schemaColumn("TABLE_NAME", FieldTypeVarWChar, 128),
                      schemaColumn("COLUMN_NAME", FieldTypeVarWChar, 128),
                      schemaColumn("COLUMN_GUID", FieldTypeGUID),
                      schemaColumn("COLUMN_PROPID", FieldTypeUnsignedInt),
                      schemaColumn("ORDINAL", FieldTypeUnsignedInt),
                      schemaColumn("PK_NAME", FieldTypeVarWChar, 128)};
    result.columns[6].Attributes = 0;
    result.rowCount = int(keys.size());
    result.rows.redim(0, int(result.columns.size()) - 1, 0, result.rowCount - 1);
    for (int r = 0; r < result.rowCount; ++r) {
        const PrimaryKeyColumn &k = keys.at(r);
        const QVariant values[] = {k.Catalog, k.Schema, k.Table, k.Column, Null(), Null(), k.Ordinal, k.KeyName};
        for (int f = 0; f < 8; ++f)
            result.rows(f, r) = values[f];
    }
    auto recordset = std::make_unique<Recordset>();
    recordset->d->activeConnection = this;
    recordset->adopt(std::move(result));
    return recordset;
}

} // namespace PanelKestrin
