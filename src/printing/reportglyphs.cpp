#include "printing/reportglyphs_p.h"

#include <QFont>
#include <QFontInfo>

#include <algorithm>

namespace PanelKestrin {

namespace {

// Latin letters, accented ones included, digits and punctuation: no control characters, no other
// script, no combining marks, nothing outside the basic plane.
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

bool ReportGlyphs::add(const QString &text, const QPointF &origin, Batch &batch) const
{
    if (!m_raw.isValid() || !isSimpleText(text))
        return false;
    const QList<quint32> glyphs = m_raw.glyphIndexesForString(text);
    if (glyphs.size() != text.size() || glyphs.contains(0u))
        return false;
    // Blank stretches of two or more (a padded column's filling) are left out: they draw nothing,
    // and the glyphs after them keep their places. A single blank between words stays, so a
    // reader of the page still finds the words apart.
    const QList<QPointF> advances = m_raw.advancesForGlyphIndexes(glyphs);
    QPointF at = origin;
    for (qsizetype i = 0; i < glyphs.size(); ++i) {
        const bool padding = text.at(i) == u' '
                             && ((i > 0 && text.at(i - 1) == u' ') || (i + 1 < text.size() && text.at(i + 1) == u' '));
        if (!padding) {
            batch.glyphs.append(glyphs.at(i));
            batch.positions.append(at);
        }
        at += advances.at(i);
    }
    return true;
}

QGlyphRun ReportGlyphs::glyphRun(const Batch &batch) const
{
    QGlyphRun run;
    run.setRawFont(m_raw);
    run.setGlyphIndexes(batch.glyphs);
    run.setPositions(batch.positions);
    return run;
}

} // namespace PanelKestrin
