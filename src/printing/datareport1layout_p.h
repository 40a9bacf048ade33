#pragma once

#include "printing/reportpreview_p.h"

#include <QStringList>
#include <memory>

namespace PanelKestrin {

class Recordset;

// The data report's lines and layout: what DataReport1 feeds the paginator.
class DataReport1Layout
{
public:
    // Reads every "prntxt" value of recordset (a Null is an empty line). Raises RuntimeError 91
    // for a null recordset and 3265 when it has no "prntxt" field.
    explicit DataReport1Layout(Recordset *recordset);

    // A paginator for the paper given with the letterhead, title, date, heading and page footer
    // set, taken from the registry and the report parameters now.
    std::unique_ptr<ReportPaginator> createPaginator(const ReportPageSetup &setup) const;
    // The feed that adds the lines a slice at a time; it shares the lines with this layout.
    ReportFeed feed() const;

private:
    std::shared_ptr<const QStringList> m_lines;
};

} // namespace PanelKestrin
