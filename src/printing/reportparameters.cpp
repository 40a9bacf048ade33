#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/recordset.h>

namespace PanelKestrin {

void ReportParameters::resetForToolbarStart()
{
    SelectionCriteria.redim(0, 1, 0, 1);
    RptParameter.redim(0, 1, 0, 1);
    SelectionCriteria(0, 0) = QString();
    RptParameter(0, 0) = QString();
    ReportToPrint = QStringLiteral("D");
}

ReportParameters &reportParameters()
{
    static ReportParameters block;
    return block;
}

} // namespace PanelKestrin
