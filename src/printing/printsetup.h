#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QWidget>

#include <memory>

namespace PanelKestrin {

class PrintSetupPrivate;

// The print options panel: the output choices of the print query form, for a host form that
// runs its own report object. "Screen", "Printer" or the file option (optoutput_0 to
// optoutput_2), "From Page", "To Page", "No. Of Copies", "File Type" ("Text File" or
// " Doc File") and "Printer &Setup...", inside the frame Frame2. The page and copy boxes take
// digits only; "To Page" also takes Backspace.
//
// The panel builds no filter and runs no report. When the focus leaves it for another control,
// it writes the chosen output into the report object by member name: "Connect" (the
// ConnectString of ConnectionSettings), "Destination" (0, 1 or 2), for the printer
// "PrinterStartPage" and "PrinterStopPage", for a file "PrintFileType" (2 text, 17 document).
// Nothing else is set; the host sets what more it needs and runs the report. A failure then
// (no report object, an empty page box, a member the object lacks) is reported through the
// event-boundary error reporter.
//
// The panel keeps its own size: 4935 by 1700 twips, 2300 high with the file option, when its
// container's "Height" also grows by 600 twips (given back when another option is chosen).
class PANELKESTRIN_EXPORT PrintSetup : public QWidget
{
    Q_OBJECT

public:
    explicit PrintSetup(QWidget *parent = nullptr);
    ~PrintSetup() override;

    // The report object the panel configures (write-only): the library's ReportEngine or any
    // object with the members above. Not owned and not checked; set it before the user can
    // leave the panel.
    Q_INVOKABLE void setCrystalReportObj(QObject *CrystalReportObj);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    std::unique_ptr<PrintSetupPrivate> d;
};

} // namespace PanelKestrin
