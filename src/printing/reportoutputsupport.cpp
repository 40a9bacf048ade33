#include "printing/reportoutputsupport_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QSaveFile>
#include <algorithm>
#include <cmath>

namespace PanelKestrin {

namespace {
const int ErrPathFileAccess = 75;
constexpr qreal sameLine = 0.01; // points
} // namespace

QVector<ReportPageLine> reportPageLines(const ReportPage &page)
{
    QVector<ReportPageLine> lines;
    QVector<const ReportTextRun *> runs;
    runs.reserve(page.texts.size());
    for (const ReportTextRun &run : page.texts)
        runs.append(&run);
    std::stable_sort(runs.begin(), runs.end(), [](const ReportTextRun *a, const ReportTextRun *b) {
        if (std::abs(a->box.top() - b->box.top()) > sameLine)
            return a->box.top() < b->box.top();
        return a->left() < b->left();
    });
    for (const ReportTextRun *run : std::as_const(runs)) {
        if (lines.isEmpty() || std::abs(lines.last().top - run->box.top()) > sameLine)
            lines.append({run->box.top(), run->box.height(), {}, nullptr});
        lines.last().runs.append(run);
        lines.last().height = std::max(lines.last().height, run->box.height());
    }
    for (const ReportRule &rule : page.rules) {
        const qreal top = std::min(rule.line.y1(), rule.line.y2()) - rule.thickness / 2;
        const auto at = std::upper_bound(lines.begin(), lines.end(), top,
                                         [](qreal t, const ReportPageLine &l) { return t < l.top; });
        lines.insert(at, {top, rule.thickness, {}, &rule});
    }
    return lines;
}

void throwReportFileError(const QString &fileName, const QString &reason)
{
    throw RuntimeError(ErrPathFileAccess,
                       QStringLiteral("Path/File access error: cannot write the report to \"%1\" (%2).")
                           .arg(fileName, reason),
                       QStringLiteral("Report"));
}

void saveReportFile(const QString &fileName, const QByteArray &bytes)
{
    if (fileName.trimmed().isEmpty())
        throwReportFileError(fileName, QStringLiteral("no file name was given"));
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throwReportFileError(fileName, file.errorString());
}

} // namespace PanelKestrin
