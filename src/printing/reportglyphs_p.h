#pragma once

#include <QGlyphRun>
#include <QRawFont>
#include <QString>

class QFont;

namespace PanelKestrin {

// Report text that needs no shaping, in a fixed-pitch font: one glyph per character, each
// followed by the font's own advance. Most of a report's runs are such text (padded columns of
// Latin letters, digits and punctuation), and for them the font's glyphs and advances are what
// QPainter::drawText draws, without shaping every run again. Anything else (a proportional
// font, a character the font lacks, other scripts, combining marks) is refused and takes the
// full text path.
class ReportGlyphs
{
public:
    ReportGlyphs() = default;
    // font as its device resolves it (QFont(font, device)): the glyphs are that device's size.
    explicit ReportGlyphs(const QFont &font);

    // Glyphs gathered for one glyph run, positioned where they are drawn.
    struct Batch
    {
        QList<quint32> glyphs;
        QList<QPointF> positions;
    };

    // Adds the glyphs of text starting at origin on its baseline to batch; false, adding
    // nothing, when text needs the full text path.
    bool add(const QString &text, const QPointF &origin, Batch &batch) const;
    // The glyph run of what batch gathered, drawn from the painter's origin.
    QGlyphRun glyphRun(const Batch &batch) const;

private:
    QRawFont m_raw; // invalid when the font is not fixed-pitch
};

} // namespace PanelKestrin
