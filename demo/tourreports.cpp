#include "tourreports.h"

#include "demoreportfiles.h"
#include "tourprint.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportengine.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/runtimeerror.h>

#include "printing/datareport1_p.h"
#include "printing/reportfiles_p.h"
#include "printing/reportpreview_p.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QPixmap>
#include <QTextStream>
#include <functional>

using namespace PanelKestrin;

namespace {

struct FileFormat {
    int engineFileType;
    const char *suffix;
};
const FileFormat kFormats[] = {
    {ReportEngine::FilePdf, "pdf"},
    {ReportEngine::FileText, "txt"},
    {ReportEngine::FileRtf, "rtf"},
};

// One order per line, its columns padded with blanks so that they line up in the data
// report's fixed-pitch font; the heading below uses the same widths. Padding is each engine's
// own: printf on SQLite, rpad/lpad and to_char on PostgreSQL.
const char kOrderListFrom[] =
    " FROM orders o JOIN customers c ON c.cust_code = o.cust_code"
    " JOIN order_lines ol ON ol.order_no = o.order_no"
    " GROUP BY o.order_no, o.order_date, c.cust_name, o.status ORDER BY o.order_no";
const char kSqliteOrderLine[] =
    "SELECT printf('%-6d  %-10s  %-30s  %-8s  %5d  %12.2f', o.order_no, strftime('%d/%m/%Y', o.order_date),"
    " c.cust_name, o.status, COUNT(*), SUM(ol.quantity * ol.unit_price)) AS prntxt";
const char kPostgresOrderLine[] =
    "SELECT rpad(o.order_no::text, 6) || '  ' || to_char(o.order_date, 'DD/MM/YYYY') || '  '"
    " || rpad(c.cust_name, 30) || '  ' || rpad(COALESCE(o.status, ''), 8) || '  ' || lpad(COUNT(*)::text, 5)"
    " || '  ' || lpad(to_char(SUM(ol.quantity * ol.unit_price), 'FM999999990.00'), 12) AS prntxt";

QString orderListQuery(const Connection &cn)
{
    return QString::fromLatin1(cn.engine() == Connection::EnginePostgreSQL ? kPostgresOrderLine : kSqliteOrderLine)
           + QString::fromLatin1(kOrderListFrom);
}

QString orderListHeading()
{
    return QStringLiteral("%1  %2  %3  %4  %5  %6")
        .arg(QStringLiteral("Order"), -6)
        .arg(QStringLiteral("Date"), -10)
        .arg(QStringLiteral("Customer"), -30)
        .arg(QStringLiteral("Status"), -8)
        .arg(QStringLiteral("Lines"), 5)
        .arg(QStringLiteral("Amount"), 12);
}

// Runs show, which opens a report preview modally, and hands the preview to use once its
// pages are laid out; the window is then closed. A window that is not a preview is rejected.
// Errors reported while the preview lays the report out are raised here.
void withPreview(const std::function<void()> &show, const std::function<void(ReportPreview &)> &use)
{
    QList<RuntimeError> errors;
    const ErrorReporter previousReporter = setErrorReporter([&errors](const RuntimeError &e) { errors << e; });
    const ModalRunner previousRunner = setModalRunner([&use](QDialog *form) {
        auto *preview = qobject_cast<ReportPreview *>(form);
        if (!preview)
            return int(QDialog::Rejected);
        preview->resize(820, 900);
        preview->show();
        if (preview->isLayingOut()) {
            QEventLoop loop;
            QObject::connect(preview, &ReportPreview::documentReady, &loop, &QEventLoop::quit);
            QObject::connect(preview, &QDialog::finished, &loop, &QEventLoop::quit);
            loop.exec();
        }
        QApplication::processEvents();
        use(*preview);
        return int(QDialog::Accepted);
    });
    try {
        show();
    } catch (...) {
        setModalRunner(previousRunner);
        setErrorReporter(previousReporter);
        throw;
    }
    setModalRunner(previousRunner);
    setErrorReporter(previousReporter);
    if (!errors.isEmpty())
        throw errors.first();
}

// Every report file of the demo to PDF, text and RTF, then the order-lines report in the
// preview window.
bool engineReports(const QDir &dir, QTextStream &out)
{
    const QString folder = DemoReportFiles::folder();
    const QStringList reportFiles = QDir(folder).entryList({QStringLiteral("*.rpt")}, QDir::Files, QDir::Name);
    if (folder.isEmpty() || reportFiles.isEmpty()) {
        out << "the demo's report files are missing (reports/ next to the program)" << Qt::endl;
        return false;
    }
    ReportEngine engine;
    engine.setConnect(ConnectionSettings::instance().ConnectString());
    engine.setDestination(ReportEngine::ToFile);
    bool ok = true;
    for (const QString &reportFile : reportFiles) {
        engine.setReportFileName(QDir(folder).filePath(reportFile));
        for (const FileFormat &format : kFormats) {
            const QString path = dir.filePath(QStringLiteral("report-%1.%2")
                                                  .arg(QFileInfo(reportFile).completeBaseName(),
                                                       QLatin1String(format.suffix)));
            engine.setPrintFileType(format.engineFileType);
            engine.setPrintFileName(path);
            engine.setAction(1);
            ok = fileWritten(path, out) && ok;
        }
    }

    const QString shot = dir.filePath(QStringLiteral("report-preview.png"));
    engine.setReportFileName(DemoReportFiles::path(QStringLiteral("order-lines.rpt")));
    engine.setDestination(ReportEngine::ToWindow);
    withPreview([&engine] { engine.setAction(1); },
                [&shot](ReportPreview &preview) {
                    preview.setZoom(ReportPreview::FitWidth);
                    QApplication::processEvents();
                    preview.grab().save(shot);
                });
    return fileWritten(shot, out) && ok;
}

bool dataReport(const QDir &dir, QTextStream &out)
{
    Connection cn;
    cn.Open(ConnectionSettings::instance().ConnectString());
    Recordset orders;
    orders.Open(orderListQuery(cn), &cn);
    ReportParameters &parameters = reportParameters();
    parameters.rpttitle = QStringLiteral("Orders");
    parameters.rptheading = orderListHeading();

    DataReport1 report(&orders);
    const QString text = dir.filePath(QStringLiteral("data-report-orders.txt"));
    report.ExportReport(QStringLiteral("key_def_Text"), text);
    bool ok = fileWritten(text, out);

    // The data report writes text only; PDF and RTF come from the pages it lays out for its
    // preview, through the same file outputs the report engine uses.
    const QString pdf = dir.filePath(QStringLiteral("data-report-orders.pdf"));
    const QString rtf = dir.filePath(QStringLiteral("data-report-orders.rtf"));
    withPreview([&report] { report.Show(1); },
                [&](ReportPreview &preview) {
                    writeReportPdf(preview.document(), pdf);
                    writeReportRtf(preview.document(), rtf);
                });
    ok = fileWritten(pdf, out) && ok;
    return fileWritten(rtf, out) && ok;
}

} // namespace

bool fileWritten(const QString &path, QTextStream &out)
{
    const bool ok = QFileInfo(path).size() > 0;
    out << (ok ? "wrote " : "could not write ") << QDir::toNativeSeparators(path) << Qt::endl;
    return ok;
}

bool writeTourReports(const QDir &dir, QTextStream &out)
{
    bool ok = true;
    for (const auto &run : {engineReports, dataReport, writeTourPrintQueries}) {
        try {
            ok = run(dir, out) && ok;
        } catch (const RuntimeError &e) {
            out << "report failed: " << e.Description() << Qt::endl;
            ok = false;
        }
    }
    return ok;
}
