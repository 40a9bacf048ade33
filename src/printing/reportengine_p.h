#pragma once

#include <PanelKestrin/reportengine.h>

#include <QStringList>

namespace PanelKestrin {

// The settings of a ReportEngine and what its last run selected.
struct ReportEnginePrivate
{
    QString connect;
    QString reportFileName;
    QString selectionFormula;
    QStringList sortFields;
    int windowState = 0;
    int destination = ReportEngine::ToWindow;
    int startPage = 0;
    int stopPage = 0;
    int copies = 1;
    QString printerName;
    int printFileType = ReportEngine::FileText;
    QString printFileName;
    int recordsSelected = 0;
};

} // namespace PanelKestrin
