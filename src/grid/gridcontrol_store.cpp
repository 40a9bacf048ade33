// The data store: the data array and row statuses the host reads back, and the members that
// read and write single cells.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"
#include "grid/gridsubscript_p.h"
#include "grid/gridvalues_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/format.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/strings.h>

#include <QLineEdit>

namespace PanelKestrin {

VariantMatrix gridcontrol::DataArray() const
{
    return d->mDataArray;
}

void gridcontrol::setDataArray(const VariantMatrix &DataArray)
{
    d->mDataArray = DataArray;
}

QStringList gridcontrol::RowStatusArray() const
{
    return d->mRowStatusArray;
}

void gridcontrol::SetGridValue()
{
    d->flexgrid->setText(d->TxtAdjust->text());
}

void gridcontrol::SetColumnValue(const QVariant &vValue, qint16 iColumn, qint16 iRow)
{
    d->TxtAdjust->setVisible(false);
    d->flexgrid->setTextMatrix(iRow, iColumn, cellText(vValue));
    d->attachDataRow(iRow); // a value written to the blank row the save trim left
    d->mDataArray.setValue(iColumn - 1, iRow - 1, vValue);
}

QVariant gridcontrol::GetColumnValue(qint16 iColumn, qint32 iRow)
{
    d->TxtAdjust->setVisible(false);
    return d->flexgrid->TextMatrix(iRow, iColumn);
}

QVariant gridcontrol::vColumnValue(qint16 iRow, qint16 iCol) const
{
    return d->flexgrid->TextMatrix(iRow, iCol);
}

bool gridcontrol::vSetGridRowColValue(qint16 &iRow, qint16 &iCol, const QVariant &vColumnValue)
{
    // Only the upper bounds are checked; the caller's index is overwritten with -1.
    if (iCol > d->flexgrid->Cols() - 1)
        iCol = -1;
    else if (iRow > d->flexgrid->Rows() - 1)
        iRow = -1;

    if (iRow != -1 && iCol != -1) {
        const QString text = cellText(vColumnValue);
        d->flexgrid->setTextMatrix(iRow, iCol, text);
        if (iCol == d->flexgrid->Col())
            d->TxtAdjust->setText(text);
        d->attachDataRow(iRow); // a value written to the blank row the save trim left
        d->mDataArray.setValue(iCol - 1, iRow - 1, vColumnValue);
    } else if (iRow == -1) {
        MsgBox(tr("Trying to assign a Row that is Invalid for the Grid."), vbCritical, tr("Formdeck"));
    } else {
        MsgBox(tr("Trying to assign a Column that is Invalid for the Grid."), vbCritical, tr("Formdeck"));
    }
    return true;
}

double gridcontrol::ColTotal(qint16 iCol) const
{
    double total = 0;
    for (int r = 1; r <= d->flexgrid->Rows() - 1; ++r)
        total += Val(d->flexgrid->TextMatrix(r, iCol));
    return total;
}

qint32 gridcontrol::CurrentRowNumber() const
{
    return d->flexgrid->Row();
}

qint32 gridcontrol::CurrentColNumber() const
{
    return d->flexgrid->Col();
}

qint32 gridcontrol::MaxRowNumber() const
{
    return d->flexgrid->Rows();
}

// The edit box's text as the typed value of data column iCol: character values at the
// column's full width, numbers as their leading number, dates as mm/dd/yyyy text.
QVariant gridcontrolPrivate::GetEditValue(qint16 iCol) const
{
    const RecStruct &rec = checkedAt(RecStructArray, iCol, QStringLiteral("RecStructArray"));
    const QString text = TxtAdjust->text();
    if (rec.DataType == QLatin1String("C")) {
        const QString t = Trim(text);
        return Len(t) < rec.Length ? t + Space(rec.Length - Len(t)) : t;
    }
    if (rec.DataType == QLatin1String("N"))
        return Val(text);
    if (rec.DataType == QLatin1String("D"))
        return Format(text, QStringLiteral("mm/dd/yyyy"));
    return QVariant();
}

} // namespace PanelKestrin
