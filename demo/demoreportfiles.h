#pragma once

#include <QString>

// The demo's report files (<name>.rpt). The build copies them next to the demo's executable
// (reports/), an install puts them under share/panelkestrin-demo/reports.
namespace DemoReportFiles {

// The folder holding the report files: the first of the places above that exists; empty when
// none does.
QString folder();

// The full path of the report file fileName; empty when the folder is missing.
QString path(const QString &fileName);

} // namespace DemoReportFiles
