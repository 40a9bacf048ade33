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
    Q_INVOKABLE void setNotEditableFields(const QVariant &NotEditableFields);
    Q_INVOKABLE void setNotBlankCols(const QString &NotBlankCols);
    Q_INVOKABLE void setDisableCol(const QString &DisableCol);
    Q_INVOKABLE void setInvokeHelpCol(const QString &InvokeHelpCol);
    Q_INVOKABLE void setMandatoryCol(const QString &MandatoryCol);
    Q_INVOKABLE void setColListEnabled(bool m_listenabled);
    Q_INVOKABLE void setGridEnable(bool bVar);

    // --- Data store -------------------------------------------------------------------------
    // Copies in and out; setting does not repaint the grid (PopulateGrid does).
    VariantMatrix DataArray() const;
    void setDataArray(const VariantMatrix &DataArray);
    QStringList RowStatusArray() const;
    Q_INVOKABLE void SetGridValue();
    Q_INVOKABLE void SetColumnValue(const QVariant &vValue, qint16 iColumn, qint16 iRow);
    Q_INVOKABLE QVariant GetColumnValue(qint16 iColumn, qint32 iRow);
    Q_INVOKABLE QVariant vColumnValue(qint16 iRow, qint16 iCol) const;
    // Checked write of one cell. An index past the grid is written back to the caller as -1
    // and reported in a message box; the result is always true.
    Q_INVOKABLE bool vSetGridRowColValue(qint16 &iRow, qint16 &iCol, const QVariant &vColumnValue);
    Q_INVOKABLE double ColTotal(qint16 iCol) const;
    qint32 CurrentRowNumber() const;
    qint32 CurrentColNumber() const;
    qint32 MaxRowNumber() const;

    // --- Population and paging --------------------------------------------------------------
    Q_INVOKABLE void PopulateGrid();
    Q_INVOKABLE void Prevpage();
    Q_INVOKABLE void Nextpage();
    Q_INVOKABLE void TopRow();
    Q_INVOKABLE void LastRow();

    // --- Rows ---------------------------------------------------------------------------------
    Q_INVOKABLE void GridRowAddnew();
    Q_INVOKABLE void GridRowDelete();
    Q_INVOKABLE bool ResetColRow();
    Q_INVOKABLE bool SaveLastCol();

    // --- Commands -----------------------------------------------------------------------------
    // 0 add a row, 1 delete the current row, 2 find; nothing unless bShowMenu.
    Q_INVOKABLE void pop_Click(qint16 Index);
    Q_INVOKABLE void CmdGridFind_Click();

Q_SIGNALS:
    void GridAfterRowAdd();
    void GridClick(qint16 &iCol, qint16 &iRow);
    void ColClick(qint16 &iCol);
    void ValidateRow(qint32 &Row, qint16 &Col, QVariant &value, bool &Cancel);
    void RowLevelValidate(qint32 &Row, bool &Cancel);
    // Declared for hosts that handle them; the grid never raises these two.
    void ColGotFocus(qint16 &Col, qint32 &Row, QObject *&txtbox, bool &ColwithList);
    void ColValidate(qint32 &Row, qint16 &Col, QVariant &value, bool &Cancel);
    void InvokeHelp(qint16 &Col, QVariant &value, bool &Cancel);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend class gridcontrolPrivate;
    std::unique_ptr<gridcontrolPrivate> const d;
};

} // namespace PanelKestrin
