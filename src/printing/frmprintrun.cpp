// The print query form's OK: the range check both report paths share, and the report engine
// path (a selection formula on the report file named by rpttitle).
#include "printing/frmprint_p.h"

#include "printing/outputoptions_p.h"
#include "printing/reportfilters_p.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>
#include <PanelKestrin/waitcursor.h>

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>

#include <optional>

namespace PanelKestrin {

namespace {

void setMember(QObject *engine, const char *name, const QVariant &value)
{
    CallByName(engine, QLatin1String(name), VbLet, {value});
}

} // namespace

void frmprint::cmdOK_Click()
{
    const bool dataReport = reportParameters().ReportToPrint == QLatin1String("D");
    // The range message warns on the data report path and is an error on the engine's.
    if (!validateRange(dataReport ? vbExclamation : vbCritical))
        return;
    if (dataReport)
        RunDataReport();
    else
        runEngineReport();
}

// Trims the range boxes (the user sees the trimmed texts), then refuses a date range that ends
// before it starts or a text range whose to text sorts before its from text. Texts compare
// character by character whatever the field's type, so 9 to 10 is refused.
bool frmprint::validateRange(int rangeIcon)
{
    WaitCursor wait;
    grpfield = fieldAt(cmbfield->currentIndex());
    txtfrom->setText(Trim(txtfrom->text()));
    txtto->setText(Trim(txtto->text()));
    if (reportRecordset()->Fields().Item(Trim(grpfield)).Type() == FieldTypeDate) {
        if (DTPicker1->date() > DTPicker2->date()) {
            MsgBox(tr("To Date cannot be smaller than from date"), vbExclamation | vbOKOnly);
            return false;
        }
    } else if (!txtto->text().isEmpty() && txtfrom->text() > txtto->text()) {
        MsgBox(tr("To Range cannot be smaller than from range"), rangeIcon);
        return false;
    }
    return true;
}

ReportFilterInput frmprint::filterInput() const
{
    const ReportParameters &block = reportParameters();
    ReportFilterInput input;
    input.field = grpfield;
    input.fieldType = reportRecordset()->Fields().Item(grpfield).Type();
    input.fromText = txtfrom->text();
    input.toText = txtto->text();
    input.fromDate = CStr(DTPicker1->date());
    input.toDate = CStr(DTPicker2->date());
    const QVariant first = block.SelectionCriteria(0, 0);
    input.hasCriteria = !isNull(first) && !CStr(first).isEmpty();
    if (input.hasCriteria) {
        input.criteriaField = block.SelectionField;
        input.criteriaValue = CStr(block.SelectionCriteria(CmbCriteria->currentIndex(), 0));
    }
    return input;
}

// The report engine, set up by member name: the report file rpttitle + ".rpt", the formula
// when there is one, the "Group On" field as first sort field, the destination with its pages
// or file type; then it runs. The copies and the file name are the engine's own business. An
// empty result says so and closes the form, as does any printer or file run; after the
// preview the form stays for another query.
void frmprint::runEngineReport()
{
    const ReportParameters &block = reportParameters();
    const QString table = reportTableName(block.rpttitle);
    const QString formula = engineSelectionFormula(filterInput(), table);
    const int destination = Frame2->destination();
    {
        // The hourglass while the report is set up and, for the printer and a file, while it
        // runs; a preview is the user's to look at.
        std::optional<WaitCursor> wait;
        wait.emplace();
        CallByName(CrystalReport1, QStringLiteral("Reset"), VbMethod);
        setMember(CrystalReport1, "WindowState", 2);
        setMember(CrystalReport1, "Connect", ConnectionSettings::instance().ConnectString());
        setMember(CrystalReport1, "ReportFileName", block.rpttitle + QStringLiteral(".rpt"));
        if (!Trim(formula).isEmpty())
            setMember(CrystalReport1, "SelectionFormula", formula);
        if (!Trim(cmbfield->currentText()).isEmpty())
            CallByName(CrystalReport1, QStringLiteral("SortFields"), VbLet, {0, engineSortField(table, grpfield)});
        if (destination == OutputOptions::Screen) {
            setMember(CrystalReport1, "Destination", 0);
            wait.reset();
        } else {
            const qint16 fromPage = Frame2->fromPage();
            const qint16 toPage = Frame2->toPage();
            if (destination == OutputOptions::Printer) {
                setMember(CrystalReport1, "Destination", 1);
                setMember(CrystalReport1, "PrinterStartPage", fromPage);
                setMember(CrystalReport1, "PrinterStopPage", toPage);
            } else {
                setMember(CrystalReport1, "Destination", 2);
                setMember(CrystalReport1, "PrintFileType", Frame2->printFileType());
            }
        }
        setMember(CrystalReport1, "Action", 1);
    }
    if (CLng(CallByName(CrystalReport1, QStringLiteral("RecordsSelected"), VbGet)) == 0) {
        MsgBox(tr("No Records Found...."), vbInformation, tr("Report"));
        unloadAfterOutput();
        return;
    }
    if (destination != OutputOptions::Screen)
        unloadAfterOutput();
}

void frmprint::unloadAfterOutput()
{
    if (UnloadForm(this))
        Form_Unload();
}

} // namespace PanelKestrin
