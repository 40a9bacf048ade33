#pragma once

#include "printing/reportdocument_p.h"

#include <PanelKestrin/panelkestrin_export.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

namespace PanelKestrin {

// "Invalid file format": a report file that is not valid JSON or does not describe a report.
inline constexpr int ErrReportFileFormat = 321;
// "File not found": no report file of that name, or one that cannot be read.
inline constexpr int ErrReportFileNotFound = 53;

// One sort key: a field of the report's data and its direction. Written "+field" (ascending,
// also without the sign) or "-field" (descending); the field may be given as a formula field
// reference "{table.field}", of which only the field counts.
struct PANELKESTRIN_EXPORT ReportSortKey
{
    QString field;
    bool descending = false;

    // Reads "+{ORDERS.CUST}", "-odate", "qty"; nullopt for a text that names no field.
    static std::optional<ReportSortKey> parse(const QString &text);
};

// A text line of a report or page header or footer; "%p" and "%P" become the page number and
// the page count.
struct PANELKESTRIN_EXPORT ReportTextLine
{
    QString text;
    Qt::Alignment alignment = Qt::AlignLeft;
};

// One column of the detail lines: the field shown, its heading, its width and alignment, and
// the pattern of Format for its numbers and dates (empty: the value as it is).
struct PANELKESTRIN_EXPORT ReportColumnDefinition
{
    QString field;
    QString heading;
    qreal width = 10;          // in characters of the report's font, or in points
    bool widthInPoints = false;
    Qt::Alignment alignment = Qt::AlignLeft;
    QString format;
};

// A group: the detail lines with one value of field, opened by a header line and closed by a
// footer line with the subtotals of the columns named. In header and footer "{value}" stands
// for the group's value.
struct PANELKESTRIN_EXPORT ReportGroupDefinition
{
    QString field;
    QString header;
    QString footer;
    QStringList subtotals; // fields of columns
};

// A report file (<name>.rpt): where the rows come from and how they are laid out. The format is
// JSON, described with an example in docs/report-files.md.
struct PANELKESTRIN_EXPORT ReportDefinition
{
    QString fileName;
    QString title;
    // Exactly one of the two is set: every row of a table, or the rows of a SELECT.
    QString table;
    QString query;
    // The paper; unset: the printer's paper (A4 portrait when there is none).
    std::optional<ReportPageSetup> page;
    qreal fontSize = 10;
    QVector<ReportTextLine> reportHeader;
    QVector<ReportTextLine> pageHeader;
    QVector<ReportTextLine> pageFooter;
    QVector<ReportColumnDefinition> columns;
    QVector<ReportSortKey> sort;
    QVector<ReportGroupDefinition> groups;
    // Grand totals at the end of the report: the label and the columns summed.
    QString totalsLabel;
    QStringList totals;

    // Reads a report file. Raises RuntimeError ErrReportFileNotFound when the file cannot be
    // read and ErrReportFileFormat naming the file, the line and what was expected there when
    // its text is not a report definition (bad JSON, an unknown key, a value of the wrong kind,
    // a missing column list...).
    static ReportDefinition read(const QString &fileName);
    // The same for a file's text already read.
    static ReportDefinition parse(const QByteArray &text, const QString &fileName);

    // The index of the column showing field (case-insensitive), -1 when none does.
    int columnIndex(const QString &field) const;
};

} // namespace PanelKestrin
