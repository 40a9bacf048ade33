#include "typelib/olecolor_p.h"
#include "platform/latebinding_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QPalette>
#include <iterator>
#include <limits>

namespace PanelKestrin {

namespace {

constexpr qint64 systemColourFlag = 0x80000000LL;

// The palette role standing for each system colour index, in index order: scroll bars,
// desktop, active and inactive title bars, menu bar, window background, window frame, menu
// text, window text, active title text, active and inactive borders, application workspace,
// highlight, highlighted text, button face, button shadow, grey text, button text, inactive
// title text, button highlight, button dark shadow, button light, tool tip text and background.
const QPalette::ColorRole systemColourRoles[] = {
    QPalette::Midlight,      QPalette::Dark,        QPalette::Highlight,  QPalette::Mid,
    QPalette::Window,        QPalette::Base,        QPalette::Shadow,     QPalette::WindowText,
    QPalette::Text,          QPalette::HighlightedText, QPalette::Button, QPalette::Button,
    QPalette::Dark,          QPalette::Highlight,   QPalette::HighlightedText, QPalette::Button,
    QPalette::Dark,          QPalette::PlaceholderText, QPalette::ButtonText, QPalette::WindowText,
    QPalette::Light,         QPalette::Shadow,      QPalette::Midlight,   QPalette::ToolTipText,
    QPalette::ToolTipBase,
};

} // namespace

QColor colourFromOleColor(const QVariant &number, const QPalette &palette, const QString &what)
{
    bool numeric = false;
    qint64 n = number.toLongLong(&numeric);
    if (numeric && n < 0 && n >= std::numeric_limits<qint32>::min())
        n += 0x100000000LL;
    const qint64 systemIndex = n - systemColourFlag;
    if (numeric && n >= 0 && n <= 0xFFFFFF)
        return QColor(int(n & 0xFF), int((n >> 8) & 0xFF), int((n >> 16) & 0xFF));
    if (numeric && systemIndex >= 0 && systemIndex < qint64(std::size(systemColourRoles)))
        return palette.color(systemColourRoles[systemIndex]);
    raise(ErrInvalidPropertyValue, what);
}

qint32 oleColorFromColour(const QColor &colour)
{
    return qint32(colour.red() | (colour.green() << 8) | (colour.blue() << 16));
}

} // namespace PanelKestrin
