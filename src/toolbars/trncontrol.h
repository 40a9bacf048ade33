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
    void addclick();
    void editclick();
    void DeleteAllowed(bool &Cancel);
    void Deleteclick();
    void saveclick();
    void findclick();
    void printclick();

private:
    friend class TrnControlPrivate;
    std::unique_ptr<TrnControlPrivate> const d;
};

} // namespace PanelKestrin
