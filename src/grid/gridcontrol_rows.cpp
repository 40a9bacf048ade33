// Row insertion and deletion for the host, the routine that removes one row from the grid and
// the store keeping them aligned, and the trailing-blank-row trim before a save.
//
// The trim drops a blank last row from the store only: the grid keeps showing it, blank, for
// the next entry. That row is the one grid row without a data row. Whatever writes a value into
// it (the user's typing, a mark, the host) first gives it its data row back, as an added row;
// deleting it removes the grid row alone.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/variant.h>

#include <QLineEdit>
#include <QScopedValueRollback>

#include <utility>

namespace PanelKestrin {

void gridcontrol::GridRowAddnew()
{
    // The add command moves the current cell itself; the editor's leave handling stays out.
    QScopedValueRollback<bool> internal(d->bInternalMove, true);
    pop_Click(0);
}

void gridcontrol::GridRowDelete()
{
    pop_Click(1);
}

bool gridcontrol::ResetColRow()
{
    QScopedValueRollback<bool> internal(d->bInternalMove, true);
    d->flexgrid->setRow(d->flexgrid->Rows() - 1);
    d->flexgrid->setCol(1);
    d->TxtAdjust->setText(d->flexgrid->TextMatrix(d->flexgrid->Row(), d->flexgrid->Col()));
    return false;
}

bool gridcontrolPrivate::hasDataRow(qint32 gridRow) const
{
    return gridRow >= 1 && mDataArray.isAssigned() && gridRow - 1 <= mDataArray.UBound(2);
}

bool gridcontrolPrivate::isTrimmedRow(qint32 gridRow) const
{
    return mDataArray.isAssigned() && gridRow == flexgrid->Rows() - 1 && gridRow - 1 == mDataArray.UBound(2) + 1;
}

// Gives the blank last grid row that the trim left its data row back, counted as added. Any
// other row is left alone.
void gridcontrolPrivate::attachDataRow(qint32 gridRow)
{
    if (!isTrimmedRow(gridRow))
        return;
    mDataArray.redimPreserve(gridRow - 1);
    mRowStatusArray.resize(gridRow);
    mRowStatusArray[gridRow - 1] = QStringLiteral("A");
}

bool gridcontrol::SaveLastCol()
{
    bool result = false;
    try {
        if (!d->commitCurrentCell())
            return false;
        result = true;
        // A trailing row whose every value reads "" is not saved: drop it from the store (the
        // grid view keeps it on screen). Once dropped, the store's last row is no longer the
        // grid's last: saving again drops nothing more.
        const int last = d->mDataArray.UBound(2);
        bool blank = d->hasDataRow(d->flexgrid->Rows() - 1);
        for (int j = 0; j <= d->mDataArray.UBound(1) && blank; ++j) {
            const QVariant &value = std::as_const(d->mDataArray)(j, last);
            blank = !isNull(value) && CStr(value).isEmpty();
        }
        if (blank) {
            if (last == 0)
                throw RuntimeError(ErrSubscriptOutOfRange,
                                   QStringLiteral("Subscript out of range: the only row cannot be dropped"),
                                   QStringLiteral("gridcontrol"));
            d->mDataArray.redimPreserve(last - 1);
            if (d->mRowStatusArray.size() > last)
                d->mRowStatusArray.resize(last);
        }
        d->bRemovingRow = false;
        return true;
    } catch (const RuntimeError &error) {
        Err().setFrom(error);
        MsgBox(tr("Error Found in Cformdeck"), vbOKOnly);
        return result;
    }
}

bool gridcontrolPrivate::RemoveGridRow(qint32 &lRow)
{
    // Checked first so that a bad row changes nothing.
    if (lRow < 1 || lRow >= flexgrid->Rows())
        throw RuntimeError(ErrInvalidGridIndex,
                           QStringLiteral("Invalid Row value: %1 (1 To %2)").arg(lRow).arg(flexgrid->Rows() - 1),
                           QStringLiteral("gridcontrol"));
    QScopedValueRollback<bool> removing(bRemovingRow, true);
    TxtAdjust->setVisible(false);

    if (flexgrid->Rows() < 3) {
        // The last data row is never removed: it is emptied and counts as added.
        lSavedRow = 1;
        flexgrid->setRows(1);
        flexgrid->setRows(2);
        mDataArray.redim(0, mDataArray.UBound(1), 0, 0);
        mRowStatusArray = QStringList{QStringLiteral("A")};
    } else {
        const int lastField = mDataArray.UBound(1);
        if (!hasDataRow(lRow)) {
            // The blank row the trim left has no data of its own to remove.
        } else if (mDataArray.UBound(2) == 0) {
            // The only data row goes, and the blank row below it becomes the grid's one row
            // for entry: emptied and counted as added, as the last row always is.
            mDataArray.redim(0, lastField, 0, 0);
            mRowStatusArray = QStringList{QStringLiteral("A")};
        } else {
            if (lRow != flexgrid->Rows() - 1) {
                // The rows below move up, re-read from the grid's text; their statuses move along.
                for (int r = lRow + 1; r <= mDataArray.UBound(2) + 1; ++r) {
                    for (int c = 0; c <= lastField; ++c)
                        mDataArray(c, r - 2) = flexgrid->TextMatrix(r, c + 1);
                    mRowStatusArray[r - 2] = mRowStatusArray.at(r - 1);
                }
            }
            mDataArray.redimPreserve(mDataArray.UBound(2) - 1);
            mRowStatusArray.removeLast();
        }
        flexgrid->RemoveItem(lRow);
    }

    flexgrid->setCol(1);
    flexgrid->setRow(lRow == flexgrid->Rows() ? lRow - 1 : lRow);
    lSavedRow = flexgrid->Row();
    TxtAdjust->setText(flexgrid->Text());
    flexgrid_EnterCell();
    return true;
}

} // namespace PanelKestrin
