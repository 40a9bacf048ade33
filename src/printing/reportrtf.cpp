#include "printing/reportfiles_p.h"

#include "printing/reportdocument_p.h"
#include "printing/reportoutputsupport_p.h"

#include <PanelKestrin/waitcursor.h>

#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace PanelKestrin {

namespace {

int twips(qreal points)
{
    return int(std::lround(points * 20));
}

// Text for RTF: the control characters escaped, everything beyond ASCII as \uN? (UTF-16 units,
// signed, with "?" for readers that know no Unicode).
QByteArray rtfText(const QString &text)
{
    QByteArray out;
    out.reserve(text.size() + 8);
    for (const QChar c : text) {
        const ushort u = c.unicode();
        if (u == '\\' || u == '{' || u == '}') {
            out += '\\';
            out += char(u);
        } else if (u == '\t') {
            out += "\\tab ";
        } else if (u >= 0x20 && u < 0x80) {
            out += char(u);
        } else if (u >= 0x80) {
            out += "\\u" + QByteArray::number(qint16(u)) + '?';
        }
    }
    return out;
}

QByteArray fontTable(const ReportDocument &document)
{
    QByteArray out = "{\\fonttbl";
    for (int i = 0; i < document.fonts.size(); ++i) {
        const QFontInfo info(document.fonts.at(i));
        out += "{\\f" + QByteArray::number(i)
               + (info.fixedPitch() ? "\\fmodern\\fprq1" : "\\fswiss\\fprq2") + "\\fcharset0 "
               + rtfText(info.family()) + ";}";
    }
    return out + "}\n";
}

QByteArray fontSwitch(const ReportDocument &document, int index)
{
    const QFont &font = document.fonts.value(index);
    QByteArray out = "\\f" + QByteArray::number(index) + "\\fs"
                     + QByteArray::number(int(std::lround(font.pointSizeF() * 2)));
    out += font.weight() >= QFont::DemiBold ? "\\b" : "\\b0";
    out += font.italic() ? "\\i" : "\\i0";
    return out + ' ';
}

// The tab stop that puts run where the page model has it, relative to the left margin.
QByteArray tabStop(const ReportTextRun &run, qreal left)
{
    if (run.alignment & Qt::AlignRight)
        return "\\tqr\\tx" + QByteArray::number(twips(run.box.right() - left));
    if (run.alignment & Qt::AlignHCenter)
        return "\\tqc\\tx" + QByteArray::number(twips(run.box.center().x() - left));
    return "\\tx" + QByteArray::number(twips(run.left() - left));
}

// One paragraph per line, spaced so that it starts at the line's own top and is exactly as
// tall as the line.
QByteArray pageBody(const ReportDocument &document, int pageIndex)
{
    const QRectF content = document.setup.contentRect();
    QByteArray out;
    qreal y = content.top();
    for (const ReportPageLine &line : reportPageLines(document.pages.at(pageIndex))) {
        const qreal gap = std::max<qreal>(0, line.top - y);
        out += "\\pard\\plain\\sb" + QByteArray::number(twips(gap)) + "\\sa0\\sl-"
               + QByteArray::number(std::max(1, twips(line.height))) + "\\slmult0";
        if (line.rule) {
            const QLineF &l = line.rule->line;
            out += "\\li" + QByteArray::number(twips(std::min(l.x1(), l.x2()) - content.left()))
                   + "\\ri" + QByteArray::number(twips(content.right() - std::max(l.x1(), l.x2())))
                   + "\\brdrb\\brdrs\\brdrw" + QByteArray::number(std::max(1, twips(line.rule->thickness)))
                   + "\\brsp0\\fs2 \\par\n";
        } else {
            QByteArray text;
            for (const ReportTextRun *run : line.runs) {
                if (run->left() - content.left() > 0.5 || (run->alignment & ~Qt::AlignLeft)) {
                    out += tabStop(*run, content.left());
                    text += "\\tab ";
                }
                text += "{" + fontSwitch(document, run->font) + rtfText(run->text) + "}";
            }
            out += ' ' + text + "\\par\n";
        }
        y = line.top + line.height;
    }
    return out;
}

} // namespace

void writeReportRtf(const ReportDocument &document, const QString &fileName, int fromPage, int toPage)
{
    const auto [first, last] = document.pageIndexRange(fromPage, toPage);
    WaitCursor wait;
    const ReportPageSetup &setup = document.setup;
    const QSizeF paper = setup.pageSizePoints();
    QByteArray out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n" + fontTable(document);
    out += "{\\info{\\title " + rtfText(document.title) + "}}\n";
    out += "\\paperw" + QByteArray::number(twips(paper.width())) + "\\paperh"
           + QByteArray::number(twips(paper.height())) + "\\margl"
           + QByteArray::number(twips(setup.margins.left())) + "\\margr"
           + QByteArray::number(twips(setup.margins.right())) + "\\margt"
           + QByteArray::number(twips(setup.margins.top())) + "\\margb"
           + QByteArray::number(twips(setup.margins.bottom()))
           + (setup.orientation == QPageLayout::Landscape ? "\\landscape" : "") + "\n";
    for (int page = first; page <= last; ++page) {
        if (page > first)
            out += "\\page\n";
        out += pageBody(document, page);
    }
    out += "}\n";
    saveReportFile(fileName, out);
}

} // namespace PanelKestrin
