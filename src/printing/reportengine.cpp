#include "printing/reportengine_p.h"

#include "printing/reportdefinition_p.h"

#include <PanelKestrin/runtimeerror.h>

namespace PanelKestrin {

namespace {

void requireValue(bool valid, const char *property, int value)
{
    if (!valid)
        throw RuntimeError(ErrInvalidPropertyValue,
                           QStringLiteral("Invalid property value %1 for %2").arg(value).arg(QLatin1String(property)),
                           QStringLiteral("ReportEngine"));
}

} // namespace

ReportEngine::ReportEngine(QObject *parent) : QObject(parent), d(std::make_unique<ReportEnginePrivate>()) {}

ReportEngine::~ReportEngine() = default;

void ReportEngine::Reset()
{
    *d = ReportEnginePrivate();
}

QString ReportEngine::Connect() const { return d->connect; }
void ReportEngine::setConnect(const QString &value) { d->connect = value; }
QString ReportEngine::ReportFileName() const { return d->reportFileName; }
void ReportEngine::setReportFileName(const QString &value) { d->reportFileName = value; }
QString ReportEngine::SelectionFormula() const { return d->selectionFormula; }
void ReportEngine::setSelectionFormula(const QString &value) { d->selectionFormula = value; }
int ReportEngine::WindowState() const { return d->windowState; }
int ReportEngine::Destination() const { return d->destination; }
int ReportEngine::PrinterStartPage() const { return d->startPage; }
int ReportEngine::PrinterStopPage() const { return d->stopPage; }
int ReportEngine::CopiesToPrinter() const { return d->copies; }
QString ReportEngine::PrinterName() const { return d->printerName; }
void ReportEngine::setPrinterName(const QString &value) { d->printerName = value; }
int ReportEngine::PrintFileType() const { return d->printFileType; }
QString ReportEngine::PrintFileName() const { return d->printFileName; }
void ReportEngine::setPrintFileName(const QString &value) { d->printFileName = value; }
int ReportEngine::RecordsSelected() const { return d->recordsSelected; }

QString ReportEngine::SortFields(int index) const
{
    if (index < 0)
        throw RuntimeError(ErrSubscriptOutOfRange, QStringLiteral("SortFields(%1): no such index").arg(index),
                           QStringLiteral("ReportEngine"));
    return d->sortFields.value(index);
}

void ReportEngine::setSortFields(int index, const QString &value)
{
    SortFields(index); // checks the index
    if (!value.trimmed().isEmpty() && !ReportSortKey::parse(value))
        throw RuntimeError(ErrInvalidPropertyValue,
                           QStringLiteral("SortFields(%1): \"%2\" is not a sort field such as \"+{TABLE.FIELD}\"")
                               .arg(index)
                               .arg(value),
                           QStringLiteral("ReportEngine"));
    while (d->sortFields.size() <= index)
        d->sortFields.append(QString());
    d->sortFields[index] = value;
}

void ReportEngine::setWindowState(int value)
{
    requireValue(value >= 0 && value <= 2, "WindowState", value);
    d->windowState = value;
}

void ReportEngine::setDestination(int value)
{
    requireValue(value >= ToWindow && value <= ToFile, "Destination", value);
    d->destination = value;
}

void ReportEngine::setPrinterStartPage(int value)
{
    requireValue(value >= 0, "PrinterStartPage", value);
    d->startPage = value;
}

void ReportEngine::setPrinterStopPage(int value)
{
    requireValue(value >= 0, "PrinterStopPage", value);
    d->stopPage = value;
}

void ReportEngine::setCopiesToPrinter(int value)
{
    requireValue(value >= 1, "CopiesToPrinter", value);
    d->copies = value;
}

void ReportEngine::setPrintFileType(int value)
{
    requireValue(value == FileText || value == FileRtf || value == FilePdf, "PrintFileType", value);
    d->printFileType = value;
}

void ReportEngine::setAction(int value)
{
    requireValue(value == 1, "Action", value);
    run();
}

} // namespace PanelKestrin
