#include "printing/datareport1_p.h"

#include "printing/datareport1layout_p.h"
#include "printing/reportengineoutput_p.h"
#include "printing/reportfiles_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportprinter_p.h"

#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/waitcursor.h>

#include <QFile>
#include <QPrinter>

namespace PanelKestrin {

namespace {

// The pages a range asks for, as the outputs take them.
std::pair<int, int> pagesOf(int range, int pageFrom, int pageTo)
{
    if (range == DataReport1::RangeFromTo)
        return {pageFrom, pageTo};
    return {1, ReportLastPage};
}

} // namespace

DataReport1::DataReport1(Recordset *recordset, QObject *parent) : QObject(parent), m_recordset(recordset) {}

DataReport1::~DataReport1() = default;

void DataReport1::Show(int modal)
{
    std::unique_ptr<DataReport1Layout> layout;
    {
        WaitCursor wait;
        layout = std::make_unique<DataReport1Layout>(m_recordset.data());
    }
    const ReportPageSetup setup = defaultReportPageSetup();
    if (modal) {
        previewReport(layout->createPaginator(setup), layout->feed(), 0);
        return;
    }
    auto *preview = new ReportPreview;
    preview->setAttribute(Qt::WA_DeleteOnClose);
    preview->startLayout(layout->createPaginator(setup), layout->feed());
    preview->showReport(0, false);
}

void DataReport1::PrintReport(bool showDialog, int range, int pageFrom, int pageTo)
{
    const DataReport1Layout layout(m_recordset.data());
    QPrinter printer(QPrinter::HighResolution);
    selectReportPrinter(printer);
    if (showDialog && RunPrinterDialog(&printer, nullptr) != QDialog::Accepted)
        return;
    WaitCursor wait;
    const ReportDocument document =
        layOutReport(layout.createPaginator(ReportPageSetup::fromPrinter(&printer)), layout.feed());
    const auto [from, to] = pagesOf(range, pageFrom, pageTo);
    printReport(document, printer, from, to, 1);
}

void DataReport1::ExportReport(const QString &formatKey, const QString &fileName, bool overwrite, bool showDialog,
                               int range, int pageFrom, int pageTo)
{
    if (formatKey.compare(QLatin1String("key_def_Text"), Qt::CaseInsensitive) != 0)
        throw RuntimeError(ErrInvalidProcedureCall,
                           QStringLiteral("DataReport1 cannot export in the format \"%1\"; the format is \"key_def_Text\"")
                               .arg(formatKey),
                           QStringLiteral("DataReport1"));
    const DataReport1Layout layout(m_recordset.data());
    QString target = fileName;
    if (showDialog) {
        target = GetSaveFileName(nullptr, QStringLiteral("Export Report"), QStringLiteral("Text files (*.txt)"), fileName);
        if (target.isEmpty())
            return;
    }
    if (!overwrite && QFile::exists(target))
        throw RuntimeError(58, QStringLiteral("File already exists: %1").arg(target), QStringLiteral("DataReport1"));
    WaitCursor wait;
    const ReportDocument document =
        layOutReport(layout.createPaginator(defaultReportPageSetup()), layout.feed());
    const auto [from, to] = pagesOf(range, pageFrom, pageTo);
    writeReportText(document, target, from, to);
}

} // namespace PanelKestrin
