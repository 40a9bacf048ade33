#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QObject>
#include <QString>
#include <memory>

namespace PanelKestrin {

struct ReportEnginePrivate;

// The report engine: runs a report file (<name>.rpt, see docs/report-files.md) over the rows of
// a database and sends the pages to the preview window, a printer or a file. Forms and panels
// drive it only through its members by name (CallByName), so a host can hand them an engine
// object of its own with the same members instead.
//
// A run (Action = 1) opens Connect read-only, reads the report file, reads the file's source,
// keeps the rows SelectionFormula selects (evaluated row by row; the formula never reaches
// SQL), sorts them (group fields, then SortFields, then the file's sort), lays them out and
// outputs them, under the wait cursor. Errors of any step (the file, the formula, the
// connection, the data, the output) are RuntimeErrors raised out of the Action assignment.
class PANELKESTRIN_EXPORT ReportEngine : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Connect READ Connect WRITE setConnect)
    Q_PROPERTY(QString ReportFileName READ ReportFileName WRITE setReportFileName)
    Q_PROPERTY(QString SelectionFormula READ SelectionFormula WRITE setSelectionFormula)
    Q_PROPERTY(int WindowState READ WindowState WRITE setWindowState)
    Q_PROPERTY(int Destination READ Destination WRITE setDestination)
    Q_PROPERTY(int PrinterStartPage READ PrinterStartPage WRITE setPrinterStartPage)
    Q_PROPERTY(int PrinterStopPage READ PrinterStopPage WRITE setPrinterStopPage)
    Q_PROPERTY(int CopiesToPrinter READ CopiesToPrinter WRITE setCopiesToPrinter)
    Q_PROPERTY(QString PrinterName READ PrinterName WRITE setPrinterName)
    Q_PROPERTY(int PrintFileType READ PrintFileType WRITE setPrintFileType)
    Q_PROPERTY(QString PrintFileName READ PrintFileName WRITE setPrintFileName)
    Q_PROPERTY(int Action READ Action WRITE setAction)
    Q_PROPERTY(int RecordsSelected READ RecordsSelected)

public:
    enum DestinationConstants { ToWindow = 0, ToPrinter = 1, ToFile = 2 };
    Q_ENUM(DestinationConstants)
    enum PrintFileTypeConstants { FileText = 2, FileRtf = 17, FilePdf = 31 };
    Q_ENUM(PrintFileTypeConstants)

    explicit ReportEngine(QObject *parent = nullptr);
    ~ReportEngine() override;

    // Every setting back to its default: no connection, file, formula or sort fields, window
    // state 0, destination the preview, every page, one copy, the default printer, text files
    // chosen by asking, no records selected.
    Q_INVOKABLE void Reset();

    // The connection string (Connection::Open); the run opens it read-only.
    QString Connect() const;
    void setConnect(const QString &value);
    QString ReportFileName() const;
    void setReportFileName(const QString &value);
    // Rows the report keeps (see SelectionFormula); blank keeps every row. Read when the
    // report runs, so a malformed formula is raised by the run.
    QString SelectionFormula() const;
    void setSelectionFormula(const QString &value);

    // Sort field index (from 0): "+{TABLE.FIELD}" ascending, "-{TABLE.FIELD}" descending, or
    // a bare field name; blank clears it. They sort in index order, before the file's sort.
    // A negative index raises 9; a text naming no field raises 380 when set.
    Q_INVOKABLE QString SortFields(int index) const;
    Q_INVOKABLE void setSortFields(int index, const QString &value);

    // The preview window: 0 normal, 1 minimised, 2 maximised. Others raise 380.
    int WindowState() const;
    void setWindowState(int value);
    // 0 the preview window (modal), 1 the printer, 2 a file. Others raise 380.
    int Destination() const;
    void setDestination(int value);
    // Pages printed, from 1, both included; 0 and 0 print every page. The printer output checks
    // the range when the report runs (a start past the end, or after the stop, raises 5).
    int PrinterStartPage() const;
    void setPrinterStartPage(int value);
    int PrinterStopPage() const;
    void setPrinterStopPage(int value);
    // At least 1; below raises 380.
    int CopiesToPrinter() const;
    void setCopiesToPrinter(int value);
    // The print queue; empty for the system's default printer.
    QString PrinterName() const;
    void setPrinterName(const QString &value);
    // 2 plain text, 17 an RTF document, 31 PDF. Others raise 380.
    int PrintFileType() const;
    void setPrintFileType(int value);
    // The file written; empty asks for one with the save-file dialog (GetSaveFileName) when
    // the report runs, and a cancelled dialog writes nothing.
    QString PrintFileName() const;
    void setPrintFileName(const QString &value);

    // Always reads 0; setting 1 runs the report, other values raise 380.
    int Action() const { return 0; }
    void setAction(int value);
    // The rows the last run selected (0 before any run and after a failed one).
    int RecordsSelected() const;

private:
    void run();

    std::unique_ptr<ReportEnginePrivate> d;
};

} // namespace PanelKestrin
