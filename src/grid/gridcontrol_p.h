#pragma once

#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/structs.h>
#include <PanelKestrin/variantmatrix.h>

#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>

class QInputMethodEvent;
class QKeyEvent;
class QLineEdit;
class QMenu;
class QPoint;
class QPushButton;
class QWidget;

namespace PanelKestrin {

class FlexGrid;

// The editable grid's parts and state behind its published surface: the grid view, the edit
// box, the find box and the command buttons, the data array with its row statuses, the column
// descriptions and rules, and the flags that keep the grid view's cell notifications and the
// control's own moves from running into each other. The handlers of the parts' notifications
// live here too, one source file per concern (gridcontrol_*.cpp).
class PANELKESTRIN_EXPORT gridcontrolPrivate
{
public:
    explicit gridcontrolPrivate(gridcontrol *control) : q(control) {}

    // The private side of a control, for the control's own files and its tests.
    static gridcontrolPrivate *get(gridcontrol *control) { return control->d.get(); }

    // Cell editor: placing it on cell entry, committing on cell leave.
    void flexgrid_EnterCell();
    void flexgrid_LeaveCell();
    QVariant GetEditValue(qint16 iCol) const;
    void placeEditor();
    void showEditorForCurrentColumn();
    bool commitCurrentCell();
    void selectEditorText();
    // Editor keys: the move table of KeyDown, the character filter of KeyPress.
    void TxtAdjust_KeyDown(qint16 &KeyCode, qint16 &Shift);
    void TxtAdjust_KeyPress(qint16 &KeyAscii);
    void SkipToNextEnabledCol();
    void SkipToPrevEnabledCol();
    bool editorKeyEvent(QKeyEvent *event);
    void editorInputMethodEvent(QInputMethodEvent *event);
    void typeFiltered(const QString &text);
    // The grid view's own notifications, focus entering and leaving the control.
    void flexgrid_Click();
    void flexgrid_KeyDown(qint16 &KeyCode, qint16 &Shift);
    void flexgrid_MouseDown(qint16 &Button, qint16 &Shift, float &X, float &Y);
    void flexgrid_MouseUp(qint16 &Button, qint16 &Shift, float &X, float &Y);
    void focusChanged(QWidget *old, QWidget *now);
    void UserControl_EnterFocus();
    void UserControl_ExitFocus();
    void showPopup(const QPoint &globalPos);
    // The find box.
    void TxtFind_Change();
    // Rows.
    bool RemoveGridRow(qint32 &lRow);
    bool hasDataRow(qint32 gridRow) const;
    // The blank last grid row whose data row the save trim dropped.
    bool isTrimmedRow(qint32 gridRow) const;
    void attachDataRow(qint32 gridRow);
    void addRow();
    void deleteRow();
    bool lastRowValueBlank(int j) const;
    // Layout and sizes.
    qint32 heightInTwips() const;
    void layoutChildren();

    gridcontrol *const q;

    FlexGrid *flexgrid = nullptr;
    QLineEdit *TxtAdjust = nullptr;
    QLineEdit *TxtFind = nullptr;
    QPushButton *CmdGridAdd = nullptr;
    QPushButton *CmdGridDelete = nullptr;
    QPushButton *CmdGridFind = nullptr;
    QMenu *popup = nullptr;

    VariantMatrix mDataArray;
    QStringList mRowStatusArray;
    QVector<RecStruct> RecStructArray;
    QVector<GridStruct> GridStructArray;
    QString sNotEditableFields;
    QString sNotEditCols;
    QString sNotBlankCols;
    QString sGridHeader;
    std::optional<QStringList> sDisableCols, sHelpCols, sMandatoryCols;
    bool bStructureMade = false;
    bool bRemovingRow = false;
    bool bHoldCell = false;
    bool bInternalMove = false;
    bool bAddingRow = false;
    bool bDeletingRow = false;
    bool bFinding = false;
    qint32 lSavedRow = 0;
    qint16 iSavedCol = 0;
    qint32 lPrevRow = 0;
    qint16 iPrevCol = 0;
    qint16 iPageSize = 0;

    // The find box searches upper-cased texts of the data array, built once per content of the
    // store: findSource shares the store's elements, so any write to the store shows as a
    // changed storage identity and the texts are built again.
    VariantMatrix findSource;
    QVector<QString> findTexts;
};

} // namespace PanelKestrin
