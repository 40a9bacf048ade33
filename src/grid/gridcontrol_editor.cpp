// The in-place editor TxtAdjust: placed over the current cell whenever the cell changes, and
// committed into the grid and the data array when the user leaves the cell.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"
#include "grid/gridsubscript_p.h"

#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/twips.h>

#include <QLineEdit>
#include <QScopedValueRollback>

namespace PanelKestrin {

// Shows the editor where the current column's rules allow it.
void gridcontrolPrivate::showEditorForCurrentColumn()
{
    TxtAdjust->setVisible(checkedAt(GridStructArray, flexgrid->Col(), QStringLiteral("GridStructArray")).ColEnable);
}

// Commits the current cell as leaving it does. When the value was refused the cell may not
// be left: the editor opens on it again with the focus, and the result is false.
bool gridcontrolPrivate::commitCurrentCell()
{
    flexgrid_LeaveCell();
    if (!bHoldCell)
        return true;
    showEditorForCurrentColumn();
    if (TxtAdjust->isVisible())
        TxtAdjust->setFocus();
    return false;
}

void gridcontrolPrivate::selectEditorText()
{
    TxtAdjust->setSelection(0, int(TxtAdjust->text().size()));
}

// Over the current cell, inset 50 twips from its left and 10 from its top; a cell narrower than
// 51 twips keeps the editor's width. The editor is named after the cell it is over.
void gridcontrolPrivate::placeEditor()
{
    const int gridLeft = PixelsToTwipsX(flexgrid->x(), q);
    const int gridTop = PixelsToTwipsY(flexgrid->y(), q);
    const int cellWidth = flexgrid->CellWidth();
    const int width = cellWidth >= 51 ? TwipsToPixelsX(cellWidth - 50, q) : TxtAdjust->width();
    TxtAdjust->setGeometry(TwipsToPixelsX(gridLeft + flexgrid->CellLeft() + 50, q),
                           TwipsToPixelsY(gridTop + flexgrid->CellTop() + 10, q), width,
                           TwipsToPixelsY(flexgrid->CellHeight() - 10, q));
    TxtAdjust->raise();
    // A screen reader announces the cell being edited: its column caption and grid row.
    TxtAdjust->setAccessibleName(gridcontrol::tr("%1, row %2").arg(flexgrid->TextMatrix(0, flexgrid->Col())).arg(flexgrid->Row()));
}

void gridcontrolPrivate::flexgrid_EnterCell()
{
    TxtAdjust->setText(QStringLiteral(" "));
    TxtAdjust->setEnabled(true);
    TxtAdjust->setVisible(false);

    placeEditor();

    if (flexgrid->Row() >= 1)
        TxtAdjust->setText(flexgrid->Text());
    if (bStructureMade)
        showEditorForCurrentColumn();
    if (TxtAdjust->isVisible() && !bFinding)
        TxtAdjust->setFocus();

    if (!bHoldCell) {
        lPrevRow = lSavedRow;
        iPrevCol = iSavedCol;
        iSavedCol = qint16(flexgrid->Col());
        lSavedRow = flexgrid->Row();
    } else if (!bInternalMove) {
        // A refused or blank mandatory cell may not be left: go back to it.
        QScopedValueRollback<bool> internal(bInternalMove, true);
        if (bRemovingRow) {
            flexgrid->setRow(flexgrid->Rows() - 1);
            flexgrid->setCol(1);
        } else {
            flexgrid->setRow(lSavedRow);
            flexgrid->setCol(iSavedCol);
        }
    }

    selectEditorText();
    flexgrid->setTextMatrix(flexgrid->Row(), 0, QStringLiteral(">"));

    // Columns listed as not editable stay editable on added rows only, and on the blank row the
    // save trim left, which is one. The column number is looked up as plain text, so column 1
    // also matches a listed 12.
    if (InStr(1, sNotEditCols, QString::number(flexgrid->Col())) > 0 && hasDataRow(flexgrid->Row())
        && checkedAt(mRowStatusArray, flexgrid->Row() - 1, QStringLiteral("RowStatusArray")) != QLatin1String("A"))
        TxtAdjust->setEnabled(false);
}

void gridcontrolPrivate::flexgrid_LeaveCell()
{
    if (bInternalMove || bAddingRow || bDeletingRow)
        return;
    const qint32 row = flexgrid->Row();
    if (row == 0 || flexgrid->Col() == 0 || !mDataArray.isAssigned())
        return;
    // Beyond the store lies at most the blank row that the save trim left: leaving it blank
    // stores nothing, a value typed into it brings its data row back (below).
    if (!hasDataRow(row) && (!isTrimmedRow(row) || Trim(TxtAdjust->text()).isEmpty()))
        return;

    qint32 validateRow = row;
    qint16 validateCol = qint16(flexgrid->Col() - 1);
    QVariant value = GetEditValue(validateCol);
    bool Cancel = false;
    emit q->ValidateRow(validateRow, validateCol, value, Cancel);

    if (Cancel) {
        bHoldCell = true;
    } else {
        bHoldCell = false;
        attachDataRow(row);
        flexgrid->setText(TxtAdjust->text());
        const int col = flexgrid->Col();
        const int dataRow = flexgrid->Row() - 1;
        // An unchanged value leaves the store shared with the recordset's rows and the grid's
        // loaded texts (a freshly loaded grid commits its first cell at once).
        mDataArray.setValue(col - 1, dataRow, GetEditValue(qint16(col - 1)));
        if (checkedAt(mRowStatusArray, dataRow, QStringLiteral("RowStatusArray")) != QLatin1String("A"))
            mRowStatusArray[dataRow] = QStringLiteral("E");
    }
    flexgrid->setTextMatrix(flexgrid->Row(), 0, QString());
}

} // namespace PanelKestrin
