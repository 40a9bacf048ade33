#include "panelkestrinwidgets.h"
#include "controlplugin.h"

namespace PanelKestrin {

namespace {

// The six controls in the order of the type description.
const ControlEntry entries[] = {
    {"UserControl1", "usercontrol1.h", ":/panelkestrin/toolbars/next.xpm",
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin", "Record navigation toolbar"),
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin",
                       "First, Prev, Next and Last over the recordset srset, with Add, Edit, Delete, Save, "
                       "Find, Print, Quit and Undo and the host's permission flags.")},
    {"gridcontrol", "gridcontrol.h", ":/panelkestrin/designer/grid.xpm",
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin", "Editable grid"),
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin",
                       "A grid loaded from a recordset, edited in place with per-column rules, read back "
                       "through its data array and row statuses.")},
    {"GridPanel", "gridpanel.h", ":/panelkestrin/toolbars/last.xpm",
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin", "Grid page toolbar"),
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin",
                       "Pages the grid given in UserGridName and runs its Edit, Save and Undo cycle.")},
    {"DTControl", "dtcontrol.h", ":/panelkestrin/designer/date.xpm",
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin", "Date entry box"),
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin",
                       "A masked date box following the user's date separator, with a calendar drop-down.")},
    {"TrnControl", "trncontrol.h", ":/panelkestrin/toolbars/save.xpm",
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin", "Transaction toolbar"),
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin",
                       "Add, Edit, Delete, Save, Find, Print, Quit and Undo for a form that edits one record.")},
    {"PrintSetup", "printsetup.h", ":/panelkestrin/toolbars/print.xpm",
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin", "Print options panel"),
     QT_TRANSLATE_NOOP("PanelKestrin::ControlPlugin",
                       "Screen, printer or file output, pages, copies and file type, written into the host's "
                       "report object.")},
};

} // namespace

PanelKestrinWidgets::PanelKestrinWidgets(QObject *parent) : QObject(parent)
{
    for (const ControlEntry &entry : entries)
        m_widgets.append(new ControlPlugin(entry, this));
}

QList<QDesignerCustomWidgetInterface *> PanelKestrinWidgets::customWidgets() const
{
    return m_widgets;
}

} // namespace PanelKestrin
