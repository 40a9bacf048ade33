#pragma once

#include <PanelKestrin/recordset.h>

#include "data/columninfo_p.h"

#include <QHash>
#include <QPointer>

namespace PanelKestrin {

struct RecordsetPrivate {
    qint32 cursorType = 0;
    qint32 cursorLocation = 2;
    qint32 lockType = 1;
    QPointer<Connection> activeConnection;
    QString source;
    QString statement; // what Open ran, run again by Requery

    bool open = false;
    QVector<ColumnInfo> columns;
    QHash<QString, int> columnByName; // lower-cased name -> first column of that name
    VariantMatrix rows;               // (field, row), the layout GetRows returns
    int rowCount = 0;
    int position = 0;                 // 1..rowCount a row, 0 BOF, rowCount + 1 EOF

    // The column of a position or case-insensitive name; raises 3265 naming it.
    int columnIndex(const QVariant &indexOrName, const QString &source) const;
};

// True for the integer and floating-point variant types (not text, booleans or dates).
inline bool isNumberVariant(const QVariant &v)
{
    switch (v.metaType().id()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Short: case QMetaType::UShort: case QMetaType::Double: case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

struct RecordsetAccess {
    static const RecordsetPrivate *get(const Recordset *recordset) { return recordset->d.get(); }
    static void checkCurrent(const Recordset *recordset, const QString &operation) { recordset->checkCurrent(operation); }
};

} // namespace PanelKestrin
