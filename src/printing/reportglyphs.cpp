#include "printing/reportglyphs_p.h"

#include <QFont>
#include <QFontInfo>

#include <algorithm>

namespace PanelKestrin {

namespace {

// Latin, Greek and Cyrillic letters, digits and punctuation: no control characters, combining
// marks, right-to-left or complex scripts, nothing outside the basic plane.
bool isSimpleText(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        const char16_t u = c.unicode();
        return u >= 0x20 && u < 0x0300 && u != 0x7f;
    });
}

} // namespace

ReportGlyphs::ReportGlyphs(const QFont &font)
{
    if (QFontInfo(font).fixedPitch())
        m_raw = QRawFont::fromFont(font);
}

std::optional<QGlyphRun> ReportGlyphs::glyphRun(const QString &text) const
{
    if (!m_raw.isValid() || !isSimpleText(text))
        return std::nullopt;
    const QList<quint32> glyphs = m_raw.glyphIndexesForString(text);
    if (glyphs.size() != text.size() || glyphs.contains(0u))
        return std::nullopt;
    QList<QPointF> positions;
    positions.reserve(glyphs.size());
    QPointF at(0, 0);
    for (const QPointF &advance : m_raw.advancesForGlyphIndexes(glyphs)) {
        positions.append(at);
        at += advance;
    }
    QGlyphRun run;
    run.setRawFont(m_raw);
    run.setGlyphIndexes(glyphs);
    run.setPositions(positions);
    return run;
}

} // namespace PanelKestrin
