#pragma once

#include "printing/reportdefinition_p.h"
#include "printing/reportenginerows_p.h"
#include "printing/reportlayout_p.h"

#include <QFont>
#include <memory>

namespace PanelKestrin {

// Lays the rows of a report engine run out as its report file describes: the report header,
// the page header with the column headings between two rules, group headers, detail lines in
// columns, group footers with subtotals, grand totals and the page footer. The rows are fed to
// the paginator a slice at a time, so the preview can lay a long report out while it shows.
class ReportEngineLayout
{
public:
    // Raises RuntimeError 3265 when a column or group names a field the rows do not have.
    ReportEngineLayout(ReportDefinition definition, ReportRows rows);

    // A paginator for the paper given, with the report's headers and footers set.
    std::unique_ptr<ReportPaginator> createPaginator(const ReportPageSetup &setup) const;
    // Adds the next slice of rows; false once everything, grand totals included, is added.
    bool feed(ReportPaginator &paginator);

private:
    struct Column
    {
        int field;    // index into the rows' fields
        qreal x;      // points from the left margin
        qreal width;  // points
        bool summed;  // a total or a group subtotal adds it up
    };

    QVector<ReportCell> cells(const QVector<QString> &texts) const;
    QString columnText(int column, const QVariant &value) const;
    QVector<ReportCell> sumLine(const QString &label, const QStringList &fields, const QVector<double> &sums) const;
    void openGroups(ReportPaginator &paginator, int from, const QVector<QVariant> &row);
    void closeGroups(ReportPaginator &paginator, int downTo);

    ReportDefinition m_definition;
    ReportRows m_rows;
    QFont m_font;
    QFont m_bold;
    QVector<Column> m_columns;
    QVector<int> m_groupFields;
    QVector<QVariant> m_groupValues;         // of the groups open now
    QVector<QVector<double>> m_groupSums;    // per group level, per column
    QVector<double> m_totals;                // per column
    int m_next = 0;
    bool m_done = false;
};

} // namespace PanelKestrin
