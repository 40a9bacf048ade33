#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/variantmatrix.h>

#include <QPointer>
#include <QString>

namespace PanelKestrin {

class Recordset;

// The parameters of the report that a toolbar's Print button produces. There is one block per
// process: the report properties of every toolbar on every form read and write it (the last
// writer wins), and the print query form reads it directly. Nothing of it is persisted.
// User-interface thread only.
struct PANELKESTRIN_EXPORT ReportParameters
{
    // The records to report on; not owned (unset, or destroyed, reads as null).
    QPointer<Recordset> srset;
    // Comma-separated captions of the sort choices and the parallel field names.
    QString sortcaptions;
    QString sortfields;
    // Base SELECT of the SQL report path, report heading and report title.
    QString selquery;
    QString rptheading;
    QString rpttitle;
    // Row i: (i, 0) the value filtered on, (i, 1) the caption offered. (0, 0) empty = no criteria.
    VariantMatrix SelectionCriteria;
    // The field the chosen criteria value is compared with.
    QString SelectionField;
    // Formula parameters handed to the report.
    VariantMatrix RptParameter;
    // Which report is produced: "D" the data report over SQL; "O" on the navigation toolbar
    // means the host prints by itself.
    QString ReportToPrint;

    // What every toolbar does when it starts: both arrays become (0 to 1, 0 to 1) of Empty with
    // element (0, 0) the empty string, and ReportToPrint becomes "D". The other values stay.
    void resetForToolbarStart();
};

// The process-wide block.
PANELKESTRIN_EXPORT ReportParameters &reportParameters();

} // namespace PanelKestrin
