#include "printing/reportfiles_p.h"

#include "printing/reportdocument_p.h"
#include "printing/reportoutputsupport_p.h"

#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/waitcursor.h>

#include <algorithm>
#include <cmath>

namespace PanelKestrin {

QStringList reportPageTextLines(const ReportDocument &document, int pageIndex)
{
    if (pageIndex < 0 || pageIndex >= document.pageCount())
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("The report has no page %1.").arg(pageIndex + 1),
                           QStringLiteral("Report"));
    const qreal cellWidth = std::max<qreal>(document.textCell.width(), 1);
    const qreal cellHeight = std::max<qreal>(document.textCell.height(), 1);
    const qreal left = document.setup.margins.left();
    const qreal top = document.setup.margins.top();
    auto column = [&](qreal x) { return std::max(0, int(std::lround((x - left) / cellWidth))); };

    QStringList rows;
    for (const ReportPageLine &line : reportPageLines(document.pages.at(pageIndex))) {
        // Lines keep their height on the page as blank rows between them, and never share a row.
        const int row = std::max(int(rows.size()), int(std::lround((line.top - top) / cellHeight)));
        while (rows.size() < row)
            rows.append(QString());
        QString text;
        if (line.rule) {
            const QLineF &l = line.rule->line;
            const int from = column(std::min(l.x1(), l.x2()));
            const int to = column(std::max(l.x1(), l.x2()));
            text.resize(from, u' ');
            text.resize(from + std::max(1, to - from), u'-');
        }
        for (const ReportTextRun *run : line.runs) {
            int at = column(run->left());
            if (at < text.size())
                at = text.isEmpty() ? 0 : int(text.size()) + 1;
            text.resize(at, u' ');
            text += run->text;
        }
        while (text.endsWith(u' '))
            text.chop(1);
        rows.append(text);
    }
    return rows;
}

void writeReportText(const ReportDocument &document, const QString &fileName, int fromPage, int toPage)
{
    const auto [first, last] = document.pageIndexRange(fromPage, toPage);
    WaitCursor wait;
    QByteArray out;
    for (int page = first; page <= last; ++page) {
        if (page > first)
            out += '\f';
        for (const QString &line : reportPageTextLines(document, page)) {
            out += line.toUtf8();
            out += '\n';
        }
    }
    saveReportFile(fileName, out);
}

} // namespace PanelKestrin
