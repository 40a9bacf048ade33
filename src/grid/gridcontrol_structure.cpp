// Column structure: describing the recordset's fields, loading its rows, the column rules,
// header captions and widths.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"
#include "grid/gridsubscript_p.h"

#include "grid/gridvalues_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/sendkeys.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>

#include <QLoggingCategory>
#include <QPushButton>
#include <QScopeGuard>

#include <utility>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("gridcontrol");

// A 16-bit field of RecStruct takes a 32-bit size: too large a size overflows, as assigning a
// long to an integer always has.
qint16 toInteger(qint32 value, const QString &what)
{
    if (value < -32768 || value > 32767)
        throw RuntimeError(ErrOverflow, QStringLiteral("Overflow: %1 is %2").arg(what).arg(value), kSource);
    return qint16(value);
}

Q_LOGGING_CATEGORY(lcGrid, "panelkestrin.grid")

// What a developer declares instead of a column type that the grid does not describe.
QString declarationAdvice(qint32 type)
{
    switch (type) {
    case 8: case 130: case 201: case 203: // text without a length, wide char
        return QStringLiteral("VARCHAR(n) or CHAR(n) for text");
    case 4: // single precision
        return QStringLiteral("DOUBLE PRECISION, or NUMERIC(p,s) for a fixed scale");
    case 14: case 139: // decimal, variable numeric
        return QStringLiteral("NUMERIC(p,s)");
    case 16: case 17: case 18: case 19: case 20: case 21: // tiny, unsigned and big integers
        return QStringLiteral("INTEGER, SMALLINT or NUMERIC(p,0) for whole numbers");
    case 64: // file time
        return QStringLiteral("DATE");
    default:
        return QStringLiteral("VARCHAR(n), CHAR(n), NUMERIC(p,s), INTEGER, SMALLINT, DOUBLE PRECISION, DATE or BOOLEAN");
    }
}

// The one-letter type of a field and the size the editor enforces. An unrecognised type code
// takes the letter of the previous recognised field of the same call (typeLetter carries it)
// with size 0, which leaves the editor refusing every key in an empty cell of that column: the
// developer is told which field it is and what to declare instead.
RecStruct describeField(const Field &field, QString &typeLetter)
{
    RecStruct rec;
    switch (field.Type()) {
    case 2: case 3: case 5: case 6: case 131: // small int, integer, double, currency, numeric
        typeLetter = QStringLiteral("N");
        rec.Length = toInteger(field.Precision(), field.Name() + QStringLiteral(".Precision"));
        rec.Decimal = toInteger(field.NumericScale(), field.Name() + QStringLiteral(".NumericScale"));
        break;
    case 7: case 133: case 134: case 135: // date, db date, db time, db timestamp
        typeLetter = QStringLiteral("D");
        rec.Length = 10;
        break;
    case 11: // boolean
        typeLetter = QStringLiteral("B");
        rec.Length = 1;
        break;
    case 129: case 200: case 202: // char, varchar, wide varchar
        typeLetter = QStringLiteral("C");
        rec.Length = toInteger(field.DefinedSize(), field.Name() + QStringLiteral(".DefinedSize"));
        break;
    default:
        qCWarning(lcGrid).noquote()
            << QStringLiteral("MakeStruct: field \"%1\" has type %2, which the grid's column table does not "
                              "describe; the column takes %3 with length 0, so the editor refuses typing into an "
                              "empty cell of it. Declare it as %4.")
                   .arg(field.Name())
                   .arg(field.Type())
                   .arg(typeLetter.isEmpty() ? QStringLiteral("no type letter")
                                             : QStringLiteral("the previous column's type \"%1\"").arg(typeLetter),
                        declarationAdvice(field.Type()));
        break;
    }
    rec.DataType = typeLetter;
    return rec;
}

// A column-list entry is a grid column number as it stands; beyond the rule table is error 9.
int ruleIndex(const QString &entry, int size, const QString &list)
{
    const int index = CInt(entry);
    checkSubscript(index, size, list);
    return index;
}

const QStringList &assignedList(const std::optional<QStringList> &list, const QString &name)
{
    if (!list)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: %1 has not been assigned (assign \"\" for none)").arg(name),
                           kSource);
    return *list;
}



} // namespace

void gridcontrol::MakeStruct(Recordset *RstTemp, const QVariant &FieldList)
{
    if (!RstTemp)
        throw RuntimeError(ErrObjectNotSet, QStringLiteral("MakeStruct: the recordset is not set"), kSource);
    d->flexgrid->setRedraw(false);
    // Repaint whatever happens: a failed load must not leave the grid frozen.
    const auto redraw = qScopeGuard([this] { d->flexgrid->setRedraw(true); });
    d->bRemovingRow = false;
    if (NoAddRow) {
        d->CmdGridAdd->setVisible(false);
        d->CmdGridDelete->setVisible(false);
    }
    d->iPageSize = qint16(d->heightInTwips() / FlexGrid::DefaultRowHeight);
    d->bHoldCell = false;
    d->sNotEditCols.clear();

    const bool listGiven = !isEmpty(FieldList);
    const QStringList fieldNames = listGiven ? FieldList.toStringList() : QStringList();
    const int lastField = listGiven ? int(fieldNames.size()) - 1 : RstTemp->Fields().Count() - 1;

    if (RstTemp->BOF() && RstTemp->adoEOF()) {
        // No records: one blank row, counted as added.
        d->mDataArray.redim(0, lastField, 0, 0);
        d->mRowStatusArray = QStringList{QStringLiteral("A")};
    } else {
        d->mDataArray = RstTemp->GetRows(-1, int(Recordset::BookmarkFirst), listGiven ? QVariant(fieldNames) : QVariant());
        d->mRowStatusArray = QStringList(d->mDataArray.UBound(2) + 1, QString());
    }

    d->RecStructArray = QVector<RecStruct>(lastField + 1);
    const QString notEditable = UCase(d->sNotEditableFields);
    const QString notBlank = UCase(d->sNotBlankCols);
    QString typeLetter;
    int j = 0;
    const PanelKestrin::Fields fields = RstTemp->Fields();
    for (int i = 0; i < fields.Count(); ++i) {
        const Field field = fields.Item(i);
        const QString name = field.Name();
        if (listGiven && Filter(fieldNames, name, true, vbTextCompare).isEmpty())
            continue;
        const QString upperName = UCase(name);
        if (InStr(1, notEditable, upperName) > 0)
            d->sNotEditCols += QString::number(j + 1) + QLatin1Char(',');
        RecStruct rec = describeField(field, typeLetter);
        // Only "nullable" alone counts as may-be-blank.
        rec.Null = field.Attributes() == 32;
        if (InStr(1, notBlank, upperName) > 0)
            rec.Null = false;
        if (j >= d->RecStructArray.size())
            throw RuntimeError(ErrSubscriptOutOfRange,
                               QStringLiteral("Subscript out of range: field %1 is the %2th field shown, the field list names %3")
                                   .arg(name).arg(j + 1).arg(d->RecStructArray.size()),
                               kSource);
        d->RecStructArray[j] = rec;
        ++j;
    }

    const QStringList headers = Split(d->sGridHeader, QStringLiteral(","));
    const int lastColumn = d->mDataArray.UBound(1);
    const int lastRow = d->mDataArray.UBound(2);
    d->flexgrid->setCols(lastColumn + 2);
    d->flexgrid->setRows(lastRow + 2);
    d->flexgrid->setColWidth(0, 200);
    d->flexgrid->setBackColorSel(QColor(Qt::blue));
    // The cells show the loaded values without a text of their own when every column has its
    // caption; otherwise they are written column by column up to the missing caption.
    const bool valuesShown =
        headers.size() > lastColumn && showValuesInGrid(*d->flexgrid, d->mDataArray, NullCell::Empty);
    for (int c = 0; c <= lastColumn; ++c) {
        d->flexgrid->setTextMatrix(0, c + 1, checkedAt(headers, c, QStringLiteral("GridHeader")));
        d->flexgrid->setColAlignment(c + 1, FlexGrid::flexAlignLeftTop);
        for (int r = 0; r <= lastRow && !valuesShown; ++r) {
            const QVariant &value = std::as_const(d->mDataArray)(c, r); // a read: no detach from the recordset's rows
            d->flexgrid->setTextMatrix(r + 1, c + 1, cellTextOrEmpty(value));
        }
    }
    d->flexgrid->setAllowBigSelection(false);
    d->flexgrid->setHighLight(FlexGrid::flexHighlightAlways);
    d->flexgrid_EnterCell();
    // One cell right and back, so that the editor settles on the first data cell.
    SendKeys(QStringLiteral("{Right}"));
    SendKeys(QStringLiteral("{Left}"));
}

void gridcontrol::MakeGridStructure()
{
    d->bStructureMade = true;
    d->bRemovingRow = false;
    const int cols = d->flexgrid->Cols();
    // One entry more than there are grid columns: the column skip of the editor may look one
    // past the last column.
    d->GridStructArray = QVector<GridStruct>(cols + 1);
    for (int k = 0; k < cols; ++k)
        d->GridStructArray[k] = GridStruct{true, false, false};
    const int size = int(d->GridStructArray.size());
    for (const QString &entry : assignedList(d->sDisableCols, QStringLiteral("DisableCol")))
        d->GridStructArray[ruleIndex(entry, size, QStringLiteral("DisableCol"))].ColEnable = false;
    // A help column is enabled even when it is also listed as disabled.
    for (const QString &entry : assignedList(d->sHelpCols, QStringLiteral("InvokeHelpCol")))
        d->GridStructArray[ruleIndex(entry, size, QStringLiteral("InvokeHelpCol"))].ColEnable = true;
    for (const QString &entry : assignedList(d->sMandatoryCols, QStringLiteral("MandatoryCol")))
        d->GridStructArray[ruleIndex(entry, size, QStringLiteral("MandatoryCol"))].ColMandatory = true;
}

void gridcontrol::ChangeGridHeader(const QVariantList &ColHeader)
{
    const QVariantList captions = checkedAt(ColHeader, 0, QStringLiteral("ColHeader")).toList();
    for (int i = 0; i <= d->flexgrid->Cols() - 2; ++i)
        d->flexgrid->setTextMatrix(0, i + 1, CStr(checkedAt(captions, i, QStringLiteral("ColHeader(0)"))));
}

void gridcontrol::FixColSizes(const QVariantList &ColSizeList)
{
    const int cols = d->flexgrid->Cols();
    if (ColSizeList.size() == cols) {
        for (int k = 1; k < cols; ++k) {
            d->flexgrid->setCol(k);
            d->flexgrid->setColWidth(k, CLng(ColSizeList.at(k)));
        }
    }
    d->flexgrid->setCol(1);
}

} // namespace PanelKestrin
