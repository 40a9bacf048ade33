// Row insertion and deletion for the host, the routine that removes one row from the grid and
// the store keeping them aligned, and the trailing-blank-row trim before a save.
#include <PanelKestrin/gridcontrol.h>

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
    QScopedValueRollback<bool> internal(bInternalMove, true);
    pop_Click(0);
}

void gridcontrol::GridRowDelete()
{
    pop_Click(1);
}

bool gridcontrol::ResetColRow()
{
    QScopedValueRollback<bool> internal(bInternalMove, true);
    flexgrid->setRow(flexgrid->Rows() - 1);
    flexgrid->setCol(1);
    TxtAdjust->setText(flexgrid->TextMatrix(flexgrid->Row(), flexgrid->Col()));
    return false;
}

bool gridcontrol::SaveLastCol()
{
    bool result = false;
    try {
        if (!commitCurrentCell())
            return false;
        result = true;
        // A trailing row whose every value reads "" is not saved: drop it from the store (the
        // grid view keeps it on screen).
        const int last = mDataArray.UBound(2);
        bool blank = true;
        for (int j = 0; j <= mDataArray.UBound(1) && blank; ++j) {
            const QVariant &value = std::as_const(mDataArray)(j, last);
            blank = !isNull(value) && CStr(value).isEmpty();
        }
        if (blank) {
            if (last == 0)
                throw RuntimeError(ErrSubscriptOutOfRange,
                                   QStringLiteral("Subscript out of range: the only row cannot be dropped"),
                                   QStringLiteral("gridcontrol"));
            mDataArray.redimPreserve(last - 1);
            if (mRowStatusArray.size() > last)
                mRowStatusArray.resize(last);
        }
        bRemovingRow = false;
        return true;
    } catch (const RuntimeError &error) {
        Err().setFrom(error);
        MsgBox(tr("Error Found in Cformdeck"), vbOKOnly);
        return result;
    }
}

bool gridcontrol::RemoveGridRow(qint32 &lRow)
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
