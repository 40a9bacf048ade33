#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QPointer>
#include <QString>
#include <QVariant>

namespace PanelKestrin {

class Recordset;

// Type codes of Field::Type(), the numbers of the classic recordset model.
enum FieldType : qint32 {
    FieldTypeSmallInt = 2,
    FieldTypeInteger = 3,
    FieldTypeSingle = 4,
    FieldTypeDouble = 5,
    FieldTypeDate = 7,
    FieldTypeBoolean = 11,
    FieldTypeTinyInt = 16,
    FieldTypeUnsignedInt = 19,
    FieldTypeBigInt = 20,
    FieldTypeGUID = 72,
    FieldTypeChar = 129,
    FieldTypeWChar = 130,
    FieldTypeNumeric = 131,
    FieldTypeDBTime = 134,
    FieldTypeDBTimeStamp = 135,
    FieldTypeVarChar = 200,
    FieldTypeLongVarChar = 201,
    FieldTypeVarWChar = 202,
    FieldTypeLongVarWChar = 203,
    FieldTypeLongVarBinary = 205,
};

// Bits of Field::Attributes(): a column that may hold NULL has exactly FieldIsNullable.
enum FieldAttribute : qint32 {
    FieldIsNullable = 32,
};

// One column of an open recordset: a small handle that reads its recordset, so it always
// answers for the recordset's current row. Using it after the recordset closed raises 3704.
class PANELKESTRIN_EXPORT Field
{
public:
    QString Name() const;
    qint32 Type() const;
    // Characters for text columns, bytes for the others (2147483647 for unbounded text).
    qint32 DefinedSize() const;
    // Total digits of numeric columns, 255 where it does not apply.
    qint32 Precision() const;
    // Digits after the point of exact numeric columns, 255 where it does not apply.
    qint32 NumericScale() const;
    // 32 for a column that may hold NULL, 0 for a NOT NULL one.
    qint32 Attributes() const;
    // The value in the current row (Null() for a database NULL); at BOF or EOF raises 3021.
    QVariant Value() const;
    // Characters of a text value, bytes of a binary one, DefinedSize otherwise; -1 for Null.
    qint32 ActualSize() const;

private:
    friend class Fields;
    Field(const Recordset *recordset, int index);

    QPointer<const Recordset> m_recordset;
    int m_index = 0;
};

// The columns of an open recordset, by position (from 0) or by name (case-insensitive).
class PANELKESTRIN_EXPORT Fields
{
public:
    qint32 Count() const;
    // An unknown name or a position outside 0 .. Count() - 1 raises 3265 naming it.
    Field Item(const QVariant &IndexOrName) const;

private:
    friend class Recordset;
    explicit Fields(const Recordset *recordset);

    QPointer<const Recordset> m_recordset;
};

} // namespace PanelKestrin

