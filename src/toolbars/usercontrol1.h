#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/toolbarbase.h>

#include <memory>

namespace PanelKestrin {

class UserControl1Private;

// The record navigation toolbar: the transaction commands plus First, Prev, Next and Last over
// the shared recordset srset. It remembers the record that was current before an edit, lets
// the host stop any follow-up step by setting gErrorInClick in an event or move handler, asks
// before undoing only when the form is dirty, and answers the host form's close query through
// the hidden command 15. Run-time errors inside a click are trapped: like a click the host
// stopped while an error is pending (Err()), they are reported in a critical message box
// titled "Force Formdeck".
//
// The mode changes go through the state helper, which combines each button's plain state with
// the host's permission flags: First with Not gAllowMoveFirst, Prev with Not gAllowMoveNext,
// Next with Not gAllowMovePrevious, Last with Not gAllowMoveLast, Add, Edit and Delete with
// gAllowAdd, gAllowEdit and gAllowDelete, and Find (when not listed) with Not gAllowFind.
// So with the flags at their initial False the navigation buttons follow the modes, and Add,
// Edit and Delete stay off until the host allows them.
class PANELKESTRIN_EXPORT UserControl1 : public ToolbarBase
{
    Q_OBJECT
    Q_PROPERTY(bool gAllowMoveFirst MEMBER gAllowMoveFirst)
    Q_PROPERTY(bool gAllowMovePrevious MEMBER gAllowMovePrevious)
    Q_PROPERTY(bool gAllowMoveNext MEMBER gAllowMoveNext)
    Q_PROPERTY(bool gAllowMoveLast MEMBER gAllowMoveLast)
    Q_PROPERTY(bool gAllowAdd MEMBER gAllowAdd)
    Q_PROPERTY(bool gAllowEdit MEMBER gAllowEdit)
    Q_PROPERTY(bool gAllowDelete MEMBER gAllowDelete)
    Q_PROPERTY(bool gAllowFind MEMBER gAllowFind)
    Q_PROPERTY(bool gErrorInClick MEMBER gErrorInClick)
    Q_PROPERTY(bool gFormIsDirty MEMBER gFormIsDirty)
    Q_PROPERTY(bool gFormQueryUnloadFired MEMBER gFormQueryUnloadFired)
    Q_PROPERTY(bool gUnloadFomForQueryUnload MEMBER gUnloadFomForQueryUnload)

public:
    enum Formdeckbtn {
        btntop = 0,
        btnprev = 1,
        btnnext = 2,
        btnlast = 3,
        btnadd = 4,
        btnedit = 5,
        btndel = 6,
        btnsave = 7,
        btnfind = 8,
        btnprint = 9,
        btnquit = 10,
        btnundo = 11,
    };
    Q_ENUM(Formdeckbtn)

    // The hidden command a host runs from its form's close query.
    static constexpr qint16 QueryUnloadCommand = 15;

    // Public variables, all False at creation.
    bool gAllowMoveFirst = false;
    bool gAllowMovePrevious = false;
    bool gAllowMoveNext = false;
    bool gAllowMoveLast = false;
    bool gAllowAdd = false;
    bool gAllowEdit = false;
    bool gAllowDelete = false;
    bool gAllowFind = false;
    // Set by a host handler to stop the rest of the click; reset at the start and end of each.
    bool gErrorInClick = false;
    // The form holds unsaved changes: Undo and the close query ask before discarding them.
    bool gFormIsDirty = false;
    // Set by the host while its form's close query runs.
    bool gFormQueryUnloadFired = false;
    // The answer to the close query: True keeps the form open.
    bool gUnloadFomForQueryUnload = false;

    explicit UserControl1(QWidget *parent = nullptr);
    ~UserControl1() override;

    // Runs button Index (0 to 11), the close-query command 15, or only the closing step for
    // any other index.
    void Command1_Click(qint16 Index) override;

    // Which report Print produces (write-only; "D" after start-up, "O" = the host prints).
    Q_INVOKABLE void setReportToPrint(const QString &ReportToPrint);

Q_SIGNALS:
    // The handlers below may set gErrorInClick (directly connected, same thread) to stop the
    // rest of the click; an error the host left pending in Err() is then reported.

    // Add was pressed: edit mode; the host clears its fields for a new record.
    void addclick();
    // Edit was pressed: edit mode, srset's current record remembered; the host unlocks its fields.
    void editclick();
    // The user answered Yes to "Are You Sure ?": the host deletes the current record (and
    // requeries srset). The toolbar then moves to the next record, or the last, or ends in the
    // empty mode when none is left, and calls "refresh1".
    void Deleteclick();
    // Save was pressed and "Validatefields" answered True, srset back on the edited record: the
    // host writes it. After an Add srset moves to its last record.
    void saveclick();
    // Find was pressed: the host finds a record; "refresh1" is called afterwards.
    void findclick();
    // Print was pressed: with ReportToPrint "O" the host prints by itself and nothing more
    // happens; otherwise the print form opens with the report parameters.
    void printclick();

protected:
    bool gatedState(int Index, bool plain, bool listed) const override;

private:
    friend class UserControl1Private;
    std::unique_ptr<UserControl1Private> const d;
};

} // namespace PanelKestrin
