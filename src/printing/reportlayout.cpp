#include "printing/reportlayout_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>

namespace PanelKestrin {

namespace {

constexpr qreal slack = 0.01; // points; sums of line heights may round a hair over the edge
// The characters whose advances a fixed-pitch font's widths are summed from: printable Latin,
// up to the combining marks.
constexpr char16_t measuredFirst = 0x20, measuredEnd = 0x300;
const int ErrUserInterrupt = 18;

QString source()
{
    return QStringLiteral("Report layout");
}

// "%p" the page number, "%P" the page count, "%%" a percent sign; any other "%" stays.
QString resolvePageTokens(const QString &text, int page, int pages)
{
    QString out;
    out.reserve(text.size() + 4);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        if (c == u'%' && next == u'p') {
            out += QString::number(page);
            ++i;
        } else if (c == u'%' && next == u'P') {
            out += QString::number(pages);
            ++i;
        } else if (c == u'%' && next == u'%') {
            out += u'%';
            ++i;
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

ReportBand &ReportBand::addText(const QFont &font, const QString &text, Qt::Alignment alignment)
{
    QString plain = text;
    plain.remove(u'\r');
    for (const QString &part : plain.split(u'\n'))
        addLine(font, {ReportCell{part, 0, 0, alignment}});
    return *this;
}

ReportBand &ReportBand::addLine(const QFont &font, QVector<ReportCell> cells)
{
    Element e;
    e.kind = Element::Text;
    e.font = font;
    e.cells = std::move(cells);
    for (ReportCell &cell : e.cells) {
        cell.text.replace(u'\n', u' ');
        cell.text.remove(u'\r');
    }
    m_elements.append(std::move(e));
    return *this;
}

ReportBand &ReportBand::addRule(qreal spaceAround, qreal thickness)
{
    Element e;
    e.kind = Element::Rule;
    e.size = spaceAround;
    e.thickness = thickness;
    m_elements.append(e);
    return *this;
}

ReportBand &ReportBand::addSpace(qreal points)
{
    Element e;
    e.kind = Element::Space;
    e.size = points;
    m_elements.append(e);
    return *this;
}

ReportBand &ReportBand::setFramed(bool framed)
{
    m_framed = framed;
    return *this;
}

QFont fixedPitchReportFont(qreal pointSize)
{
    const QStringList families = QFontDatabase::families();
    QFont font = families.contains(QStringLiteral("Courier New"))
                     ? QFont(QStringLiteral("Courier New"))
                 : families.contains(QStringLiteral("Liberation Mono"))
                     ? QFont(QStringLiteral("Liberation Mono"))
                     : QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    font.setPointSizeF(pointSize);
    return font;
}

struct ReportPaginator::Private
{
    struct Metrics
    {
        QFontMetricsF metrics;
        qreal ascent;      // points
        qreal lineHeight;  // points
        bool fixedPitch;
        // Advances in device dots of the characters measuredFirst to measuredEnd of a
        // fixed-pitch font, measured as they come (0: not yet).
        QVector<qreal> advances;
    };
    // A run whose text holds page tokens, resolved once the page count is known.
    struct TokenRun
    {
        int page;
        int run;
        QString text;
    };

    ReportDocument doc;
    QRectF content;
    qreal toPoints;      // points per device dot of the metrics device
    QImage device;       // carries the resolution the fonts are measured at
    QVector<Metrics> metrics; // parallel to doc.fonts

    ReportBand reportHeader, pageHeader, pageFooter;
    QVector<ReportBand> pendingGroupHeaders;
    QVector<TokenRun> tokenRuns;
    std::function<bool(int)> progress;

    bool started = false;
    bool pageOpen = false;
    bool bodyUsed = false; // something below the page header on the open page
    qreal y = 0;
    qreal bodyBottom = 0;

    // The band lines of a report come in one or two fonts, each usually one shared QFont; the
    // last one asked for is remembered so that comparing it is a pointer comparison.
    QFont lastFont;
    int lastFontIndex = -1;

    int fontIndex(const QFont &font)
    {
        if (lastFontIndex >= 0 && font == lastFont)
            return lastFontIndex;
        const int index = doc.addFont(font);
        while (metrics.size() < doc.fonts.size()) {
            const QFont &added = doc.fonts.at(metrics.size());
            const QFontMetricsF fm(added, &device);
            const bool fixedPitch = QFontInfo(QFont(added, &device)).fixedPitch();
            metrics.append({fm, fm.ascent() * toPoints, fm.lineSpacing() * toPoints, fixedPitch,
                            QVector<qreal>(fixedPitch ? measuredEnd - measuredFirst : 0, 0)});
        }
        lastFont = font;
        lastFontIndex = index;
        return index;
    }

    // The width of text in points. Padded columns of Latin text in a fixed-pitch font are most
    // of a report: such text is one glyph per character without kerning, so its width is the sum
    // of its characters' advances, each measured once. Anything else is shaped in full.
    qreal textWidth(Metrics &m, const QString &text)
    {
        if (m.fixedPitch) {
            qreal dots = 0;
            bool simple = true;
            for (const QChar c : text) {
                const char16_t u = c.unicode();
                if (u < measuredFirst || u >= measuredEnd || u == 0x7f) {
                    simple = false;
                    break;
                }
                qreal &advance = m.advances[u - measuredFirst];
                if (advance == 0)
                    advance = m.metrics.horizontalAdvance(c);
                dots += advance;
            }
            if (simple)
                return dots * toPoints;
        }
        return m.metrics.horizontalAdvance(text) * toPoints;
    }

    qreal elementHeight(const ReportBand::Element &e)
    {
        switch (e.kind) {
        case ReportBand::Element::Text:
            return metrics.at(fontIndex(e.font)).lineHeight;
        case ReportBand::Element::Rule:
            return 2 * e.size + e.thickness;
        case ReportBand::Element::Space:
            return e.size;
        }
        return 0;
    }

    qreal bandHeight(const ReportBand &band)
    {
        qreal h = 0;
        for (const auto &e : band.elements())
            h += elementHeight(e);
        return h;
    }

    void emitElement(const ReportBand::Element &e, bool tokens)
    {
        ReportPage &page = doc.pages.last();
        const qreal h = elementHeight(e);
        if (e.kind == ReportBand::Element::Rule) {
            const qreal ly = y + e.size + e.thickness / 2;
            page.rules.append({QLineF(content.left(), ly, content.right(), ly), e.thickness});
        } else if (e.kind == ReportBand::Element::Text) {
            const int font = fontIndex(e.font);
            Metrics &m = metrics[font];
            for (const ReportCell &cell : e.cells) {
                if (cell.text.isEmpty())
                    continue;
                ReportTextRun run;
                const qreal width = cell.width > 0 ? cell.width : content.width() - cell.x;
                run.box = QRectF(content.left() + cell.x, y, width, h);
                run.alignment = cell.alignment & Qt::AlignHorizontal_Mask;
                run.font = font;
                run.text = cell.text;
                run.baseline = y + m.ascent;
                run.width = textWidth(m, run.text);
                if (tokens && run.text.contains(u'%'))
                    tokenRuns.append({int(doc.pages.size()) - 1, int(page.texts.size()), run.text});
                page.texts.append(std::move(run));
            }
        }
        y += h;
    }

    // Lays the band down from y, the whole of it if it fits the room left, else element by
    // element across pages.
    void placeBand(const ReportBand &band, bool tokens)
    {
        qreal frameTop = y;
        auto closeFrame = [&] {
            if (band.framed() && y > frameTop)
                doc.pages.last().boxes.append({QRectF(content.left(), frameTop, content.width(), y - frameTop), 0.5});
        };
        if (y + bandHeight(band) > bodyBottom + slack) {
            for (const auto &e : band.elements()) {
                if (y + elementHeight(e) > bodyBottom + slack) {
                    if (!bodyUsed)
                        throw RuntimeError(ErrInvalidProcedureCall,
                                           QStringLiteral("A line of the report is taller than "
                                                          "the room a page leaves between its "
                                                          "header and footer."),
                                           source());
                    closeFrame();
                    closePage();
                    openPage();
                    frameTop = y;
                }
                emitElement(e, tokens);
                bodyUsed = true;
            }
        } else {
            for (const auto &e : band.elements())
                emitElement(e, tokens);
        }
        closeFrame();
    }

    void openPage()
    {
        doc.pages.append(ReportPage());
        pageOpen = true;
        bodyUsed = false;
        y = content.top();
        if (doc.pages.size() == 1) {
            for (const auto &e : reportHeader.elements())
                emitElement(e, true);
        }
        for (const auto &e : pageHeader.elements())
            emitElement(e, true);
        bodyBottom = content.bottom() - bandHeight(pageFooter);
        if (bodyBottom <= y + slack)
            throw RuntimeError(ErrInvalidProcedureCall,
                               QStringLiteral("The report header, page header and page footer "
                                              "leave no room for lines on a %1 x %2 point page.")
                                   .arg(content.width() + doc.setup.margins.left() + doc.setup.margins.right())
                                   .arg(content.height() + doc.setup.margins.top() + doc.setup.margins.bottom()),
                               source());
    }

    void closePage()
    {
        y = bodyBottom;
        for (const auto &e : pageFooter.elements())
            emitElement(e, true);
        pageOpen = false;
        if (progress && !progress(int(doc.pages.size())))
            throw RuntimeError(ErrUserInterrupt, QStringLiteral("The report was cancelled."), source());
    }

    // Lays down the group headers waiting for a band together with that band, on a new page
    // when they do not fit on this one together.
    void flow(const ReportBand *band, bool tokens)
    {
        started = true;
        if (!pageOpen)
            openPage();
        qreal total = band ? bandHeight(*band) : 0;
        for (const ReportBand &header : pendingGroupHeaders)
            total += bandHeight(header);
        if (bodyUsed && y + total > bodyBottom + slack) {
            closePage();
            openPage();
        }
        const QVector<ReportBand> headers = std::exchange(pendingGroupHeaders, {});
        for (const ReportBand &header : headers) {
            placeBand(header, false);
            bodyUsed = true;
        }
        if (band) {
            placeBand(*band, tokens);
            bodyUsed = true;
        }
    }

    void requireNotStarted(const char *what)
    {
        if (started)
            throw RuntimeError(ErrInvalidProcedureCall,
                               QStringLiteral("The %1 must be set before the first line of the "
                                              "report is laid out.")
                                   .arg(QLatin1String(what)),
                               source());
    }
};

ReportPaginator::ReportPaginator(const ReportPageSetup &setup, int resolution)
    : d(std::make_unique<Private>())
{
    if (resolution < 1)
        throw RuntimeError(ErrInvalidProcedureCall,
                           QStringLiteral("Invalid layout resolution %1 dpi.").arg(resolution),
                           source());
    d->doc.setup = setup;
    d->content = setup.contentRect();
    d->toPoints = 72.0 / resolution;
    d->device = QImage(1, 1, QImage::Format_ARGB32);
    const int dotsPerMeter = qRound(resolution / 0.0254);
    d->device.setDotsPerMeterX(dotsPerMeter);
    d->device.setDotsPerMeterY(dotsPerMeter);
    setTextFont(fixedPitchReportFont());
}

ReportPaginator::~ReportPaginator() = default;

void ReportPaginator::setTitle(const QString &title)
{
    d->doc.title = title;
}

void ReportPaginator::setTextFont(const QFont &font)
{
    const QFontMetricsF fm(font, &d->device);
    d->doc.textCell = QSizeF(fm.horizontalAdvance(u'0') * d->toPoints, fm.lineSpacing() * d->toPoints);
}

void ReportPaginator::setReportHeader(const ReportBand &band)
{
    d->requireNotStarted("report header");
    d->reportHeader = band;
}

void ReportPaginator::setPageHeader(const ReportBand &band)
{
    d->requireNotStarted("page header");
    d->pageHeader = band;
}

void ReportPaginator::setPageFooter(const ReportBand &band)
{
    d->requireNotStarted("page footer");
    d->pageFooter = band;
}

void ReportPaginator::addGroupHeader(const ReportBand &band)
{
    d->started = true;
    d->pendingGroupHeaders.append(band);
}

void ReportPaginator::addDetail(const ReportBand &band)
{
    d->flow(&band, false);
}

void ReportPaginator::addGroupFooter(const ReportBand &band)
{
    d->flow(&band, false);
}

void ReportPaginator::addReportFooter(const ReportBand &band)
{
    d->flow(&band, true);
}

void ReportPaginator::setProgressHandler(std::function<bool(int)> handler)
{
    d->progress = std::move(handler);
}

int ReportPaginator::pageCount() const
{
    return d->doc.pageCount();
}

ReportDocument ReportPaginator::finish()
{
    if (!d->pendingGroupHeaders.isEmpty() || !d->pageOpen)
        d->flow(nullptr, false);
    d->closePage();
    const int pages = d->doc.pageCount();
    for (const auto &t : std::as_const(d->tokenRuns)) {
        ReportTextRun &run = d->doc.pages[t.page].texts[t.run];
        run.text = resolvePageTokens(t.text, t.page + 1, pages);
        run.width = d->textWidth(d->metrics[run.font], run.text);
    }
    d->tokenRuns.clear();
    return std::move(d->doc);
}

} // namespace PanelKestrin
