// Report output of 10,000 lines, against QTextDocument printing the same lines to PDF in the
// same run (what a Qt program would do without a report library):
//  - DataReport1 over a recordset of 10,000 "prntxt" lines, laid out and written to PDF, and
//    exported to text;
//  - the report engine over a report file with one group, 10,000 rows of the bench table read and
//    sorted once, laid out and written to a PDF file and to a text file; and whole engine runs
//    (connecting, reading and sorting too) shown for information;
//  - QTextDocument holding the same 10,000 lines in the same fixed-pitch font, printed with
//    QTextDocument::print on a QPdfWriter of the same paper.
// Budgets: each PDF at most 0.5x of the QTextDocument time, each text output under 0.1x of it,
// and the data report's PDF under 1 MB.
#include "benchsupport.h"

#include "printing/datareport1_p.h"
#include "printing/datareport1layout_p.h"
#include "printing/reportdefinition_p.h"
#include "printing/reportenginelayout_p.h"
#include "printing/reportengineoutput_p.h"
#include "printing/reportenginerows_p.h"
#include "printing/reportfiles_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportparameters.h"
#include "printing/selectionformula_p.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportengine.h>
#include <PanelKestrin/runtimeerror.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTextDocument>

#include <cstdio>
#include <memory>

using namespace PanelKestrin;
using BenchSupport::BenchFailure;
using BenchSupport::require;

namespace {

constexpr int kRows = 10000;
constexpr int kRuns = 3;
constexpr double kPdfBudget = 0.5;   // of the QTextDocument PDF time
constexpr double kTextBudget = 0.1;  // of the QTextDocument PDF time
constexpr qint64 kPdfSizeBudget = 1024 * 1024;

// Each bench row as one blank-padded line, as a host's query delivers it to the data report;
// 64 characters, so that neither side wraps a line.
const char *const kLinesQuery =
    "SELECT printf('%6d  %-20s %10.2f  %s  %4d  %-6s', id, name, price, due, qty, "
    "CASE active WHEN 1 THEN 'yes' ELSE 'no' END) AS prntxt FROM bench ORDER BY id";

// Columns of the bench table in 50 groups of 200 rows, each with its subtotals, and totals.
const char *const kReportFile = R"({
  "title": "Bench orders",
  "source": { "query": "SELECT id, name, price, due, qty, (id - 1) / 200 AS batch FROM bench" },
  "pageHeader": [ { "text": "Page %p of %P", "align": "right" } ],
  "pageFooter": [ "Bench orders - page %p" ],
  "columns": [
    { "field": "id",    "heading": "No.",   "width": 6,  "align": "right" },
    { "field": "name",  "heading": "Name",  "width": 20 },
    { "field": "due",   "heading": "Due",   "width": 10, "format": "dd/mm/yyyy" },
    { "field": "qty",   "heading": "Qty",   "width": 6,  "align": "right", "format": "0" },
    { "field": "price", "heading": "Price", "width": 12, "align": "right", "format": "#,##0.00" }
  ],
  "sort": [ "+id" ],
  "groups": [ { "field": "batch", "header": "Batch {value}", "footer": "Batch {value}",
                "subtotals": [ "qty", "price" ] } ],
  "totals": { "label": "Grand total", "columns": [ "qty", "price" ] }
}
)";

struct Timing {
    double ms = 0;
    int pages = 0;
    qint64 bytes = 0;
};

qint64 fileSize(const QString &path)
{
    const QFileInfo info(path);
    require(info.exists() && info.size() > 0, QStringLiteral("%1 was not written").arg(path));
    return info.size();
}

// Pages of a text output: a form feed stands between two pages.
int textPages(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), QStringLiteral("cannot read %1").arg(path));
    return int(file.readAll().count('\f')) + 1;
}

// Pages of a PDF file: its page objects.
int pdfPages(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), QStringLiteral("cannot read %1").arg(path));
    const QByteArray pdf = file.readAll();
    return int(pdf.count("/Type /Page\n") + pdf.count("/Type /Page\r") + pdf.count("/Type /Page/")
               + pdf.count("/Type /Page ") + pdf.count("/Type /Page>"));
}

// The data report's lines, as the QTextDocument baseline gets them.
QStringList reportLines(Connection &connection)
{
    Recordset rs;
    rs.Open(QString::fromLatin1(kLinesQuery), &connection);
    const VariantMatrix values = rs.GetRows(-1, Recordset::BookmarkFirst);
    QStringList lines;
    for (int r = values.LBound(2); r <= values.UBound(2); ++r)
        lines.append(values.value(values.LBound(1), r).toString());
    require(lines.size() == kRows, QStringLiteral("the query gave %1 lines").arg(lines.size()));
    return lines;
}

Timing timeTextDocument(const QStringList &lines, const QString &path)
{
    const QString text = lines.join(u'\n');
    const ReportPageSetup setup;
    Timing t;
    t.ms = BenchSupport::bestOfMs(kRuns, [&] {
        QTextDocument document;
        document.setDefaultFont(fixedPitchReportFont(10));
        document.setPlainText(text);
        QPdfWriter writer(path);
        writer.setPageLayout(QPageLayout(setup.pageSize, setup.orientation, setup.margins, QPageLayout::Point));
        document.print(&writer);
    });
    t.pages = pdfPages(path);
    t.bytes = fileSize(path);
    return t;
}

Timing timeDataReportPdf(Recordset &rs, const QString &path)
{
    Timing t;
    t.ms = BenchSupport::bestOfMs(kRuns, [&] {
        const DataReport1Layout layout(&rs);
        const ReportDocument document =
            layOutReport(layout.createPaginator(ReportPageSetup::fromPrinter(nullptr)), layout.feed());
        writeReportPdf(document, path);
        t.pages = document.pageCount();
    });
    t.bytes = fileSize(path);
    require(pdfPages(path) == t.pages, QStringLiteral("%1 has %2 pages, the report %3").arg(path).arg(pdfPages(path)).arg(t.pages));
    return t;
}

Timing timeDataReportText(Recordset &rs, const QString &path)
{
    DataReport1 report(&rs);
    Timing t;
    t.ms = BenchSupport::bestOfMs(kRuns, [&] { report.ExportReport(QStringLiteral("key_def_Text"), path); });
    t.pages = textPages(path);
    t.bytes = fileSize(path);
    return t;
}

// The engine's rows of the report file, read and sorted (group field first) as a run does.
ReportRows engineRows(Connection &connection, const ReportDefinition &definition)
{
    ReportRows rows = loadReportRows(connection, definition, SelectionFormula::parse(QString()));
    sortReportRows(rows, reportRunSortKeys(definition, {}), definition.fileName);
    require(rows.rows.size() == kRows, QStringLiteral("the engine read %1 rows").arg(rows.rows.size()));
    return rows;
}

// The engine's layout of rows and its output of type fileType (the rows are read once, before).
Timing timeEngineLayout(const ReportDefinition &definition, const ReportRows &rows, int fileType, const QString &path)
{
    Timing t;
    t.ms = BenchSupport::bestOfMs(kRuns, [&] {
        auto layout = std::make_shared<ReportEngineLayout>(definition, rows);
        const ReportDocument document = layOutReport(layout->createPaginator(ReportPageSetup::fromPrinter(nullptr)),
                                                     [layout](ReportPaginator &p) { return layout->feed(p); });
        if (fileType == ReportEngine::FilePdf)
            writeReportPdf(document, path);
        else
            writeReportText(document, path);
        t.pages = document.pageCount();
    });
    t.bytes = fileSize(path);
    const int written = fileType == ReportEngine::FilePdf ? pdfPages(path) : textPages(path);
    require(written == t.pages, QStringLiteral("%1 has %2 pages, the report %3").arg(path).arg(written).arg(t.pages));
    return t;
}

// A whole engine run of the report file to a file of type fileType, as a form starts it:
// connecting, reading, sorting, layout and output.
Timing timeEngineRun(const QString &connect, const QString &reportFile, int fileType, const QString &path)
{
    ReportEngine engine;
    engine.setProperty("Connect", connect);
    engine.setProperty("ReportFileName", reportFile);
    engine.setProperty("Destination", int(ReportEngine::ToFile));
    engine.setProperty("PrintFileType", fileType);
    engine.setProperty("PrintFileName", path);
    Timing t;
    t.ms = BenchSupport::bestOfMs(kRuns, [&] { engine.setProperty("Action", 1); });
    require(engine.property("RecordsSelected").toInt() == kRows,
            QStringLiteral("the engine selected %1 rows").arg(engine.property("RecordsSelected").toInt()));
    t.pages = fileType == ReportEngine::FilePdf ? pdfPages(path) : textPages(path);
    t.bytes = fileSize(path);
    return t;
}

int run(const QTemporaryDir &dir)
{
    const QString database = dir.filePath(QStringLiteral("bench.sqlite"));
    require(BenchSupport::createDatabase(database.toUtf8(), kRows), QStringLiteral("cannot create %1").arg(database));
    const QString connect = QStringLiteral("Provider=SQLite;Data Source=") + database;
    const QString reportFile = dir.filePath(QStringLiteral("bench.rpt"));
    {
        QFile file(reportFile);
        require(file.open(QIODevice::WriteOnly) && file.write(kReportFile) > 0,
                QStringLiteral("cannot write %1").arg(reportFile));
    }
    reportParameters().rpttitle = QStringLiteral("Bench lines");
    reportParameters().rptheading = QStringLiteral("    No  Name                      Price  Due          Qty  Active");

    Connection connection;
    connection.Open(connect);
    Recordset rs;
    rs.Open(QString::fromLatin1(kLinesQuery), &connection);

    const Timing baseline = timeTextDocument(reportLines(connection), dir.filePath(QStringLiteral("qtextdocument.pdf")));
    const Timing dataPdf = timeDataReportPdf(rs, dir.filePath(QStringLiteral("datareport.pdf")));
    const Timing dataText = timeDataReportText(rs, dir.filePath(QStringLiteral("datareport.txt")));
    const ReportDefinition definition = ReportDefinition::read(reportFile);
    const ReportRows rows = engineRows(connection, definition);
    const Timing enginePdf =
        timeEngineLayout(definition, rows, ReportEngine::FilePdf, dir.filePath(QStringLiteral("engine.pdf")));
    const Timing engineText =
        timeEngineLayout(definition, rows, ReportEngine::FileText, dir.filePath(QStringLiteral("engine.txt")));
    const Timing runPdf =
        timeEngineRun(connect, reportFile, ReportEngine::FilePdf, dir.filePath(QStringLiteral("run.pdf")));
    const Timing runText =
        timeEngineRun(connect, reportFile, ReportEngine::FileText, dir.filePath(QStringLiteral("run.txt")));
    require(dataPdf.pages == dataText.pages, QStringLiteral("the data report has %1 PDF pages and %2 text pages")
                                                 .arg(dataPdf.pages).arg(dataText.pages));
    require(enginePdf.pages == engineText.pages, QStringLiteral("the engine report has %1 PDF pages and %2 text pages")
                                                     .arg(enginePdf.pages).arg(engineText.pages));

    bool withinBudget = true;
    const auto line = [&](const char *what, const Timing &t, double budget) {
        const double ratio = t.ms / baseline.ms;
        const bool ok = budget <= 0 || ratio <= budget;
        withinBudget = withinBudget && ok;
        std::printf("  %-34s %8.1f ms %4d pages %6.2f ms/page %8.1f KB", what, t.ms, t.pages, t.ms / t.pages,
                    t.bytes / 1024.0);
        if (budget > 0)
            std::printf("  %.3fx (budget %.1fx): %s", ratio, budget, ok ? "within budget" : "OVER BUDGET");
        std::printf("\n");
    };
    std::printf("bench_report: %d lines, layout and output, best of %d, against QTextDocument printing them to PDF\n",
                kRows, kRuns);
    line("QTextDocument::print to PDF", baseline, 0);
    line("DataReport1 to PDF", dataPdf, kPdfBudget);
    line("DataReport1 to text", dataText, kTextBudget);
    line("report engine, one group, to PDF", enginePdf, kPdfBudget);
    line("report engine, one group, to text", engineText, kTextBudget);
    std::printf("  whole engine runs (connect, read, sort, layout, output), for information:\n");
    line("report engine run to PDF", runPdf, 0);
    line("report engine run to text", runText, 0);
    const bool small = dataPdf.bytes < kPdfSizeBudget;
    withinBudget = withinBudget && small;
    std::printf("  DataReport1 PDF %.1f KB (budget under %lld KB): %s\n", dataPdf.bytes / 1024.0,
                kPdfSizeBudget / 1024, small ? "within budget" : "OVER BUDGET");
    return withinBudget ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    return BenchSupport::runWidgetBenchmark(argc, argv, run);
}
