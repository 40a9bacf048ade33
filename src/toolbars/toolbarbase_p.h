#pragma once

#include <PanelKestrin/toolbarbase.h>

#include <QString>
#include <QVector>

class QShortcut;

namespace PanelKestrin {

// What every toolbar keeps behind its published surface: the source of its errors, its row of
// buttons, which of them the access keys press and focus, and the design-time properties read
// from the host's property bag.
class ToolbarBasePrivate
{
public:
    ToolbarBasePrivate(ToolbarBase *toolbar, const char *context, qint16 undoIndex, qint16 saveIndex);

    // Esc (while Undo can be pressed) and Alt+W as window shortcuts of the host form.
    void createAccessKeys();
    void updateEscapeKey();

    ToolbarBase *const q;
    // The error source, the translation context with dots ("PanelKestrin.TrnControl").
    QString m_source;
    QVector<QAbstractButton *> m_buttons;
    qint16 m_undoIndex;
    qint16 m_saveIndex;
    QShortcut *m_escape = nullptr;
    // The Undo button's Cancel: Esc on the host form presses it (designed on).
    bool m_undoCancel = true;
    // cmdenable as last given or loaded.
    QString m_cmdenableText;
    bool m_Default = false;
};

} // namespace PanelKestrin
