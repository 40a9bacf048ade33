#pragma once

// What the report output tests share: a report laid out the way the engine and the data report
// lay theirs out, and the readers (poppler's pdftotext, unrtf) that tell what a user would see.

#include "printing/reportfiles_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportpreview_p.h"

#include <PanelKestrin/modalrunner.h>

#include <functional>
#include <memory>

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTest>

namespace ReportTest {

using namespace PanelKestrin;

// "Item 00001   Widget number 1        1.50": fixed-pitch columns padded with blanks, the way
// data-report lines come from their query.
inline QString paddedLine(int n)
{
    return QStringLiteral("Item %1   %2 %3")
        .arg(n, 5, 10, QLatin1Char('0'))
        .arg(QStringLiteral("Widget number %1").arg(n), -22)
        .arg(QString::number(n * 1.5, 'f', 2), 10);
}

inline QFont proportionalFont(qreal points = 12, bool bold = false)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

// The paginator of the sample report: a title on the first page, a page header of
// "Page %p of %P" and a column heading between two rules, a footer "Page: %p".
inline std::unique_ptr<ReportPaginator> samplePaginator(const ReportPageSetup &setup = ReportPageSetup())
{
    const QFont fixed = fixedPitchReportFont(10);
    auto paginator = std::make_unique<ReportPaginator>(setup);
    paginator->setTitle(QStringLiteral("Sample report"));
    paginator->setTextFont(fixed);
    paginator->setReportHeader(ReportBand()
                                   .addText(proportionalFont(16, true), QStringLiteral("STOCK LIST"),
                                            Qt::AlignHCenter)
                                   .addText(fixed, QStringLiteral("Date:23/11/2026"))
                                   .addSpace(6));
    paginator->setPageHeader(ReportBand()
                                 .addLine(fixed, {ReportCell{QStringLiteral("Page %p of %P"), 0, 0, Qt::AlignRight}})
                                 .addRule()
                                 .addText(fixed, QStringLiteral("CODE         DESCRIPTION                 PRICE"))
                                 .addRule());
    paginator->setPageFooter(ReportBand().addSpace(4).addText(fixed, QStringLiteral("Page: %p")));
    return paginator;
}

// Detail line n of `lines`; with groupEvery > 0 a group header "Group g" before every
// groupEvery lines and a footer "Total group g: <count>" after them.
inline void addSampleLine(ReportPaginator &paginator, int n, int lines, int groupEvery)
{
    static const QFont fixed = fixedPitchReportFont(10);
    const int inGroup = groupEvery > 0 ? (n - 1) % groupEvery + 1 : 0;
    const int group = groupEvery > 0 ? (n - 1) / groupEvery + 1 : 0;
    if (inGroup == 1)
        paginator.addGroupHeader(ReportBand().addText(fixed, QStringLiteral("Group %1").arg(group)));
    paginator.addDetail(ReportBand().addText(fixed, paddedLine(n)));
    if (groupEvery > 0 && (inGroup == groupEvery || n == lines))
        paginator.addGroupFooter(ReportBand().addText(
            fixed, QStringLiteral("Total group %1: %2").arg(group).arg(inGroup)));
}

inline ReportDocument sampleReport(int lines, int groupEvery = 0,
                                   const ReportPageSetup &setup = ReportPageSetup())
{
    auto paginator = samplePaginator(setup);
    for (int n = 1; n <= lines; ++n)
        addSampleLine(*paginator, n, lines, groupEvery);
    return paginator->finish();
}

// Runs a reader and returns what it wrote; fails the test when it cannot run.
inline QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        qWarning("%s failed: %s", qPrintable(program), process.readAllStandardError().constData());
        return QString();
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

// Lines of a text with their blanks collapsed, empty ones dropped: what two readers of the same
// page both see, whatever spacing each keeps.
inline QStringList wordLines(const QString &text)
{
    QStringList lines;
    for (const QString &line : text.split(u'\n')) {
        const QString words = line.simplified();
        if (!words.isEmpty())
            lines << words;
    }
    return lines;
}

// The page's text as the page model holds it, without the rules: what a reader of the PDF
// should find on that page.
inline QStringList modelWordLines(const ReportDocument &document, int pageIndex)
{
    QStringList lines;
    for (const QString &line : reportPageTextLines(document, pageIndex)) {
        const QString words = line.simplified();
        if (!words.isEmpty() && words.count(u'-') != words.size())
            lines << words;
    }
    return lines;
}

inline int pdfPageCount(const QString &fileName)
{
    const QString info = run(QStringLiteral("pdfinfo"), {fileName});
    for (const QString &line : info.split(u'\n'))
        if (line.startsWith(QLatin1String("Pages:")))
            return line.mid(6).trimmed().toInt();
    return -1;
}

inline QString pdfPageText(const QString &fileName, int page)
{
    return run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), QStringLiteral("-f"),
                                            QString::number(page), QStringLiteral("-l"),
                                            QString::number(page), fileName, QStringLiteral("-")});
}

// The pages of a text report file (form feeds between them); none when it cannot be read.
inline QStringList textFilePages(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\f');
}

// Takes over the modal runner so that the report preview a run opens is shown, laid out to the
// end and handed to check, then closed; returns the count of previews shown so far.
inline std::shared_ptr<int> checkPreviews(std::function<void(ReportPreview *)> check)
{
    auto shown = std::make_shared<int>(0);
    setModalRunner([shown, check](QDialog *form) {
        auto *preview = qobject_cast<ReportPreview *>(form);
        if (!preview)
            return 0;
        ++*shown;
        form->show();
        [&] {
            QTRY_VERIFY(!preview->isLayingOut());
            check(preview);
        }();
        return 0;
    });
    return shown;
}

} // namespace ReportTest
