#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/toolbarbase.h>

#include <memory>

namespace PanelKestrin {

class gridcontrol;
class GridPanelPrivate;

// The grid page toolbar, placed beside an editable grid: First, Prev, Next and Last page the
// grid given in UserGridName; Edit, Save and Undo run a whole-grid edit cycle whose values the
// host handles in editclick, saveclick and CancelClick. Save asks the grid (SaveLastCol), not
// the host form; Undo moves srset to its first record. Modes:
//   grid edit   only Save and Undo enabled (after Edit);
//   grid browse all but Save and Undo enabled (after Save, and Undo with records);
//   grid empty  only Edit and Quit enabled (Undo with no record).
// The paging buttons never change the mode. Nothing is trapped: an unset grid (error 91) and
// the grid's, srset's and the print form's errors reach the caller of Command1_Click.
class PANELKESTRIN_EXPORT GridPanel : public ToolbarBase
{
    Q_OBJECT

public:
    enum Gridpanelbtn {
        btntop = 0,
        btnprev = 1,
        btnnext = 2,
        btnlast = 3,
        btnedit = 4,
        btnsave = 5,
        btnprint = 6,
        btnquit = 7,
        btnundo = 8,
    };
    Q_ENUM(Gridpanelbtn)

    explicit GridPanel(QWidget *parent = nullptr);
    ~GridPanel() override;

    // The grid the buttons drive (write-only, not owned).
    Q_INVOKABLE void setUserGridName(PanelKestrin::gridcontrol *UserGridName);

    // Runs button Index (0 to 8; anything else does nothing).
    void Command1_Click(qint16 Index) override;

Q_SIGNALS:
    // Edit was pressed: the toolbar is in grid edit mode; the host enables the grid.
    void editclick();
    // Save was pressed and the grid committed its open cell (SaveLastCol): the host writes the
    // grid's "A" and "E" rows. The toolbar then goes to grid browse mode.
    void saveclick();
    // The user confirmed "Are you Sure...All Changes will be Lost": the host restores the
    // grid's values; srset then moves to its first record.
    void CancelClick();
    // Declared like the other toolbars' find event; this toolbar has no Find button.
    void findclick();
    // Print was pressed, before the print form opens with the report parameters.
    void printclick();

private:
    std::unique_ptr<GridPanelPrivate> const d;
};

} // namespace PanelKestrin
