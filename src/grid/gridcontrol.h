#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/structs.h>
#include <PanelKestrin/variantmatrix.h>

#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace PanelKestrin {

class Recordset;
class gridcontrolPrivate;

// The editable grid: a grid view (flexgrid) showing a data array that the host loads from a
// recordset, edits in place through the edit box TxtAdjust floating over the current cell, and
// reads back with a parallel row-status array ("" loaded, "A" added, "E" edited) to save it.
//
// Grid coordinates count from 1 for data cells: grid cell (r, c) holds DataArray(c - 1, r - 1).
// Grid row 0 is the header and column 0 the row-marker column.
class PANELKESTRIN_EXPORT gridcontrol : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QVariant gValue MEMBER gValue)
    Q_PROPERTY(qint16 gColToFix MEMBER gColToFix)
    Q_PROPERTY(bool NoAddRow MEMBER NoAddRow)
    Q_PROPERTY(bool bShowMenu MEMBER bShowMenu)
    Q_PROPERTY(PanelKestrin::VariantMatrix DataArray READ DataArray WRITE setDataArray)
    Q_PROPERTY(QStringList RowStatusArray READ RowStatusArray)
    Q_PROPERTY(QVariant GridHeader READ GridHeader WRITE setGridHeader)
    Q_PROPERTY(qint32 CurrentRowNumber READ CurrentRowNumber)
    Q_PROPERTY(qint32 CurrentColNumber READ CurrentColNumber)
    Q_PROPERTY(qint32 MaxRowNumber READ MaxRowNumber)

public:
    // Public variables: the text shown in the mark column of a marked row, the mark column's
    // grid number (0 = none), no adding or deleting rows, the pop-up menu and buttons offered.
    QVariant gValue;
    qint16 gColToFix = 0;
    bool NoAddRow = false;
    bool bShowMenu = false;

    explicit gridcontrol(QWidget *parent = nullptr);
    ~gridcontrol() override;

    // --- Column structure -----------------------------------------------------------------
    // Describes every shown field of RstTemp (all fields, or those FieldList names: a string
    // list or variant list of names, matched as case-insensitive substrings) and loads its rows
    // from the first into DataArray and the grid. Reads NotEditableFields, NotBlankCols and
    // GridHeader, which the host sets first; leaves the recordset at EOF.
    Q_INVOKABLE void MakeStruct(PanelKestrin::Recordset *RstTemp, const QVariant &FieldList = QVariant());
    // Builds the column rules from DisableCol, InvokeHelpCol and MandatoryCol (all three must
    // have been assigned, an empty string meaning none).
    Q_INVOKABLE void MakeGridStructure();
    QVariant GridHeader() const;
    void setGridHeader(const QVariant &GridHeader);
    // The captions are the array held in ColHeader's first element.
    Q_INVOKABLE void ChangeGridHeader(const QVariantList &ColHeader);
    // One width in twips per grid column, column 0 included (and ignored); any other count
    // resizes nothing. The current column becomes 1 in every case.
    Q_INVOKABLE void FixColSizes(const QVariantList &ColSizeList);
    // Field names (any separator; each field whose name appears in the text matches) whose
    // cells may be typed into on added rows only; read by MakeStruct.
    Q_INVOKABLE void setNotEditableFields(const QVariant &NotEditableFields);
    // Field names whose cells may not be left blank; read by MakeStruct.
    Q_INVOKABLE void setNotBlankCols(const QString &NotBlankCols);
    // Grid column numbers, comma-separated, for MakeGridStructure: columns the editor never
    // opens in, columns filled through InvokeHelp, columns a new row needs filled first.
    Q_INVOKABLE void setDisableCol(const QString &DisableCol);
    Q_INVOKABLE void setInvokeHelpCol(const QString &InvokeHelpCol);
    Q_INVOKABLE void setMandatoryCol(const QString &MandatoryCol);
    // Kept for hosts that set it; the editor offers no list.
    Q_INVOKABLE void setColListEnabled(bool m_listenabled);
    // Enables or disables the grid view and its edit box.
    Q_INVOKABLE void setGridEnable(bool bVar);

    // --- Data store -------------------------------------------------------------------------
    // The data the host saves: element (field, data row), both from 0; grid cell (r, c) shows
    // element (c - 1, r - 1). Copies in and out; setting does not repaint the grid
    // (PopulateGrid does).
    VariantMatrix DataArray() const;
    void setDataArray(const VariantMatrix &DataArray);
    // One code per data row: "" loaded and unchanged, "A" added, "E" edited.
    QStringList RowStatusArray() const;
    // The current cell shows the edit box's text; the data array is not touched.
    Q_INVOKABLE void SetGridValue();
    // Cell members take grid coordinates (from 1), each in its own argument order. This one
    // writes the value into cell (iRow, iColumn) and the data array, hiding the edit box; the
    // row's status is not changed.
    Q_INVOKABLE void SetColumnValue(const QVariant &vValue, qint16 iColumn, qint16 iRow);
    // The text of cell (iRow, iColumn); hides the edit box.
    Q_INVOKABLE QVariant GetColumnValue(qint16 iColumn, qint32 iRow);
    // The text of cell (iRow, iCol); the edit box stays as it is.
    Q_INVOKABLE QVariant vColumnValue(qint16 iRow, qint16 iCol) const;
    // Checked write of one cell and its data element (the edit box too when iCol is the
    // current column). An index past the grid is written back to the caller as -1 and
    // reported in a message box; the result is always true.
    Q_INVOKABLE bool vSetGridRowColValue(qint16 &iRow, qint16 &iCol, const QVariant &vColumnValue);
    // The sum of the numbers (Val) the cells of grid column iCol show; text counts as 0.
    Q_INVOKABLE double ColTotal(qint16 iCol) const;
    // The current grid row and column, and the grid's row count (data rows + 1).
    qint32 CurrentRowNumber() const;
    qint32 CurrentColNumber() const;
    qint32 MaxRowNumber() const;

    // --- Population and paging --------------------------------------------------------------
    // Shows every element of the data array in its cell (after the host replaced it).
    Q_INVOKABLE void PopulateGrid();
    // Moves the current row one page (the control's height / 285 twips rows) up or down, to
    // the first data row, or to the last row; the edit box follows the current cell.
    Q_INVOKABLE void Prevpage();
    Q_INVOKABLE void Nextpage();
    Q_INVOKABLE void TopRow();
    Q_INVOKABLE void LastRow();

    // --- Rows ---------------------------------------------------------------------------------
    // The add command of the pop-up menu: commits the open cell, asks RowLevelValidate, adds
    // an "A" row at the end and raises GridAfterRowAdd. Refused silently while the last row
    // is blank or misses a mandatory value.
    Q_INVOKABLE void GridRowAddnew();
    // The delete command of the pop-up menu: removes the current row from the grid and the
    // data array after the user confirms.
    Q_INVOKABLE void GridRowDelete();
    // Moves to the first column of the last row and loads the edit box; returns false.
    Q_INVOKABLE bool ResetColRow();
    // Before saving: commits the open cell (ValidateRow may refuse it: false, the cell is
    // held) and drops a blank last row from the data array and statuses, leaving its grid
    // row on screen; true when the host may save.
    Q_INVOKABLE bool SaveLastCol();

    // --- Commands -----------------------------------------------------------------------------
    // 0 add a row, 1 delete the current row, 2 find; nothing unless bShowMenu.
    Q_INVOKABLE void pop_Click(qint16 Index);
    Q_INVOKABLE void CmdGridFind_Click();

Q_SIGNALS:
    // Every event hands its arguments by reference; the grid reads back what a handler writes
    // (Cancel above all) as soon as the signal returns, so a handler must be connected
    // directly (same thread) for its answer to count.

    // A row was added at the end (status "A"); the host may fill default values.
    void GridAfterRowAdd();
    // The user clicked a cell: grid column and row (from 1), after ColClick.
    void GridClick(qint16 &iCol, qint16 &iRow);
    // The user clicked a cell of grid column iCol (from 1).
    void ColClick(qint16 &iCol);
    // The user leaves a cell: Row is the grid row, Col the data column (from 0), value what
    // was typed, converted for the column. Setting Cancel keeps the old value in the data
    // array and the grid and holds the cell; otherwise value is stored and the row becomes
    // "E" (unless "A").
    void ValidateRow(qint32 &Row, qint16 &Col, QVariant &value, bool &Cancel);
    // Before a row is added: Row is the current grid row less 1. Setting Cancel refuses the
    // new row silently.
    void RowLevelValidate(qint32 &Row, bool &Cancel);
    // Declared for hosts that handle them; the grid never raises these two.
    void ColGotFocus(qint16 &Col, qint32 &Row, QObject *&txtbox, bool &ColwithList);
    void ColValidate(qint32 &Row, qint16 &Col, QVariant &value, bool &Cancel);
    // F1 in a cell: Col is the data column (from 0), value the cell's typed value. The host
    // looks a value up and writes it (SetColumnValue); setting Cancel swallows the key.
    void InvokeHelp(qint16 &Col, QVariant &value, bool &Cancel);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend class gridcontrolPrivate;
    std::unique_ptr<gridcontrolPrivate> const d;
};

} // namespace PanelKestrin
