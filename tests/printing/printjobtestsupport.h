#pragma once

// The print jobs of the test print server, for tests that print a report through the engine or
// the data report and read back what the queue wrote.

#include "reporttestsupport.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace PrintJobTest {

// Puts the test print server's settings (CUPS_SERVER, the queue, its PDF folder and page log)
// into the environment. libcups reads them once, on the first printer query, so a test calls
// this in initTestCase before anything asks for a printer. False when the server is not up.
inline bool useTestPrintServer()
{
    QFile env(qEnvironmentVariable("PK_TEST_CUPS_ENV_FILE"));
    if (!env.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray &line : env.readAll().split('\n'))
        if (const int equals = int(line.indexOf('=')); equals > 0)
            qputenv(line.left(equals).constData(), line.mid(equals + 1));
    return true;
}

// Waits until the queue has written the job titled title (its page log gets the job's "total"
// line) and returns the text of each page of its PDF; empty when it did not come.
inline QStringList jobPages(const QString &title)
{
    const QRegularExpression finished(
        QStringLiteral("\\] total \\d+ \\S+ \\S+ %1 ").arg(QRegularExpression::escape(title)));
    const bool done = QTest::qWaitFor([&] {
        QFile log(qEnvironmentVariable("PK_CUPS_PAGE_LOG"));
        return log.open(QIODevice::ReadOnly) && finished.match(QString::fromUtf8(log.readAll())).hasMatch();
    }, 60000);
    const QDir folder(qEnvironmentVariable("PK_CUPS_PDF_DIR"));
    const QStringList files = folder.entryList({title + QLatin1String("*.pdf")}, QDir::Files);
    if (!done || files.size() != 1)
        return {};
    QStringList pages;
    const QString pdf = folder.filePath(files.first());
    for (int page = 1; page <= ReportTest::pdfPageCount(pdf); ++page)
        pages << ReportTest::pdfPageText(pdf, page);
    return pages;
}

// The first match of pattern on each page: what a reader finds there, in page order.
inline QStringList foundOnPages(const QStringList &pages, const QString &pattern)
{
    QStringList found;
    for (const QString &page : pages)
        found << QRegularExpression(pattern).match(page).captured();
    return found;
}

} // namespace PrintJobTest
