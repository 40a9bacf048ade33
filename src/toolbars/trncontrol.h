#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/toolbarbase.h>

#include <memory>

namespace PanelKestrin {

class TrnControlPrivate;

// The transaction toolbar: Add, Edit, Delete, Save, Find, Print, Quit and Undo for a host form
// that edits one record at a time. It owns no data: it raises events the host answers, asks the
// host form by name to "Validatefields" (before a save) and to "refresh1" (after a confirmed
// delete, every find and a confirmed undo), reads srset's BOF and EOF to tell whether records
// are left, and switches between three modes:
//   edit   Save and Undo enabled, the others disabled (after Add and Edit);
//   browse the others enabled, Save and Undo disabled (after Save, Delete, Undo);
//   empty  only Add and Quit enabled (no record left).
class PANELKESTRIN_EXPORT TrnControl : public ToolbarBase
{
    Q_OBJECT

public:
    enum TrnControlBtn {
        btnadd = 0,
        btnedit = 1,
        btndel = 2,
        btnsave = 3,
        btnfind = 4,
        btnprint = 5,
        btnquit = 6,
        btnundo = 7,
    };
    Q_ENUM(TrnControlBtn)

    explicit TrnControl(QWidget *parent = nullptr);
    ~TrnControl() override;

    // Runs button Index (0 to 7; anything else does nothing). Failures of the host calls, of
    // srset (unset: error 91) and of the print form reach the caller; what the click already
    // did stays done.
    void Command1_Click(qint16 Index) override;

    // Which report Print produces (write-only; "D" after start-up).
    Q_INVOKABLE void setReportToPrint(const QString &ReportToPrint);

Q_SIGNALS:
    // Add was pressed: the toolbar is in edit mode; the host clears its fields for a new record.
    void addclick();
    // Edit was pressed: the toolbar is in edit mode; the host unlocks its fields.
    void editclick();
    // Delete was pressed, before anything is asked: a handler sets Cancel to True to refuse the
    // delete without a question (the mode then follows the records left). The answer counts
    // only from a handler connected directly (same thread): the toolbar reads Cancel as soon as
    // the signal returns.
    void DeleteAllowed(bool &Cancel);
    // The user confirmed "Are You Sure ?": the host deletes the current record (and requeries
    // srset). "refresh1" is called afterwards.
    void Deleteclick();
    // Save was pressed and the form's "Validatefields" answered True: the host writes the
    // record. The toolbar then goes to browse mode.
    void saveclick();
    // Find was pressed: the host finds a record; "refresh1" is called afterwards.
    void findclick();
    // Print was pressed, before the print form opens with the report parameters.
    void printclick();

private:
    friend class TrnControlPrivate;
    std::unique_ptr<TrnControlPrivate> const d;
};

} // namespace PanelKestrin
