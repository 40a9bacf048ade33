#pragma once

namespace PanelKestrin {

// One button of a toolbar's row: its caption (an ampersand marks the access letter), its tool
// tip (also the description a screen reader gives of the button), both translated in the
// toolbar's own context, and the name of the picture that the toolbar's image list holds for it
// (a resource under :/panelkestrin/toolbars/).
struct ToolbarButton {
    const char *caption;
    const char *toolTip;
    const char *picture;
};

} // namespace PanelKestrin
