#include <PanelKestrin/gridpanel.h>

#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include "toolbars/toolbarbutton_p.h"

#include <QCoreApplication>
#include <QPointer>

namespace PanelKestrin {

namespace {

#define PK_CONTEXT "PanelKestrin::GridPanel"
// The image list holds the pictures in button order: item i + 1 is button i's.
const ToolbarButton kButtons[] = {
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&First"), QT_TRANSLATE_NOOP(PK_CONTEXT, "First Page of Grid"), "first"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Prev"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Previous Page of Grid"), "prev"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Next"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Next Page of Grid"), "next"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Last"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Last Page of Grid"), "last"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Edit"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Update Grid Values"), "edit"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Save"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Save Grid Values"), "save"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Print"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Print To Screen/Printer..."), "print"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Quit"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Quit and Unload the Form"), "quit"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Undo"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Cancel the Current Mode"), "undo"},
};

} // namespace

// The grid the paging and Save buttons drive.
class GridPanelPrivate
{
public:
    // The grid; raises RuntimeError 91 (from source) when none is set or it is gone.
    gridcontrol *grid(const QString &source) const
    {
        if (!UserGridName)
            throw RuntimeError(ErrObjectNotSet, RuntimeError::standardDescription(ErrObjectNotSet)
                                                    + QStringLiteral(": UserGridName"),
                               source);
        return UserGridName;
    }

    QPointer<gridcontrol> UserGridName;
};

GridPanel::GridPanel(QWidget *parent)
    : ToolbarBase(PK_CONTEXT, kButtons, int(std::size(kButtons)), btnundo, btnsave, parent),
      d(std::make_unique<GridPanelPrivate>())
{
}

GridPanel::~GridPanel() = default;

void GridPanel::setUserGridName(gridcontrol *UserGridName)
{
    d->UserGridName = UserGridName;
}

void GridPanel::Command1_Click(qint16 Index)
{
    switch (Index) {
    case btntop:
        d->grid(errorSource())->TopRow();
        break;
    case btnprev:
        d->grid(errorSource())->Prevpage();
        break;
    case btnnext:
        d->grid(errorSource())->Nextpage();
        break;
    case btnlast:
        d->grid(errorSource())->LastRow();
        break;
    case btnedit:
        SetButtonStates(true, {btnsave, btnundo});
        emit editclick();
        break;
    case btnsave:
        if (!d->grid(errorSource())->SaveLastCol())
            return; // the grid kept its pending edit: stay in grid edit mode
        emit saveclick();
        SetButtonStates(false, {btnsave, btnundo});
        break;
    case btnprint:
        emit printclick();
        showPrintForm();
        break;
    case btnquit:
        unloadHostForm();
        break;
    case btnundo: {
        if (MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are you Sure...All Changes will be Lost"),
                   vbYesNo + vbQuestion, QCoreApplication::translate(PK_CONTEXT, "Confirm Undo"))
            != vbYes)
            return;
        emit CancelClick(); // the host restores the grid's values
        Recordset *rs = recordset();
        if (!(rs->BOF() && rs->adoEOF()))
            rs->MoveFirst();
        if (rs->adoEOF() || rs->BOF())
            SetButtonStates(true, {btnedit, btnquit});
        else
            SetButtonStates(false, {btnsave, btnundo});
        break;
    }
    default:
        break;
    }
}

} // namespace PanelKestrin
