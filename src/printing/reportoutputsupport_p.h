#pragma once

#include "printing/reportdocument_p.h"

#include <QByteArray>

namespace PanelKestrin {

// What the text and RTF outputs share: a page read as lines top to bottom, and saving bytes.

// One line of a page: the text runs sharing one line box, left to right, or one rule.
struct ReportPageLine
{
    qreal top = 0;
    qreal height = 0;
    QVector<const ReportTextRun *> runs; // empty for a rule
    const ReportRule *rule = nullptr;
};

// The lines of page, ordered by their top, then rules after text at the same height.
QVector<ReportPageLine> reportPageLines(const ReportPage &page);

// Writes bytes to fileName, replacing it; RuntimeError 75 naming the file when that fails.
void saveReportFile(const QString &fileName, const QByteArray &bytes);
[[noreturn]] void throwReportFileError(const QString &fileName, const QString &reason);

} // namespace PanelKestrin
