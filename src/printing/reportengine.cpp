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

ReportEngine::ReportEngine(QObject *parent) : QObject(parent) {}

ReportEngine::~ReportEngine() = default;

void ReportEngine::Reset()
{
    m_connect.clear();
    m_reportFileName.clear();
    m_selectionFormula.clear();
    m_sortFields.clear();
    m_windowState = 0;
    m_destination = ToWindow;
    m_startPage = 0;
    m_stopPage = 0;
    m_copies = 1;
    m_printerName.clear();
    m_printFileType = FileText;
    m_printFileName.clear();
    m_recordsSelected = 0;
}

QString ReportEngine::SortFields(int index) const
{
    if (index < 0)
        throw RuntimeError(ErrSubscriptOutOfRange, QStringLiteral("SortFields(%1): no such index").arg(index),
                           QStringLiteral("ReportEngine"));
    return m_sortFields.value(index);
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
    while (m_sortFields.size() <= index)
        m_sortFields.append(QString());
    m_sortFields[index] = value;
}

void ReportEngine::setWindowState(int value)
{
    requireValue(value >= 0 && value <= 2, "WindowState", value);
    m_windowState = value;
}

void ReportEngine::setDestination(int value)
{
    requireValue(value >= ToWindow && value <= ToFile, "Destination", value);
    m_destination = value;
}

void ReportEngine::setPrinterStartPage(int value)
{
    requireValue(value >= 0, "PrinterStartPage", value);
    m_startPage = value;
}

void ReportEngine::setPrinterStopPage(int value)
{
    requireValue(value >= 0, "PrinterStopPage", value);
    m_stopPage = value;
}

void ReportEngine::setCopiesToPrinter(int value)
{
    requireValue(value >= 1, "CopiesToPrinter", value);
    m_copies = value;
}

void ReportEngine::setPrintFileType(int value)
{
    requireValue(value == FileText || value == FileRtf || value == FilePdf, "PrintFileType", value);
    m_printFileType = value;
}

void ReportEngine::setAction(int value)
{
    requireValue(value == 1, "Action", value);
    run();
}

} // namespace PanelKestrin
