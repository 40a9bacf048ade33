#include "printing/keypressrule_p.h"

#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/keycodes.h>

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace PanelKestrin {

namespace {

class KeyPressFilter : public QObject
{
public:
    KeyPressFilter(QLineEdit *box, QString where, KeyPressRule rule)
        : QObject(box), m_where(std::move(where)), m_rule(std::move(rule))
    {
        box->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return QObject::eventFilter(watched, event);
        const qint16 KeyAscii = KeyAsciiFromEvent(static_cast<QKeyEvent *>(event));
        if (KeyAscii == 0 || KeyAscii == vbKeyTab)
            return false;
        bool allowed = false;
        guardEvent(m_where, [&] { allowed = m_rule(KeyAscii); });
        return !allowed;
    }

private:
    QString m_where;
    KeyPressRule m_rule;
};

} // namespace

void setKeyPressRule(QLineEdit *box, const QString &where, KeyPressRule rule)
{
    new KeyPressFilter(box, where, std::move(rule));
}

bool isDigitKey(qint16 KeyAscii)
{
    return KeyAscii >= '0' && KeyAscii <= '9';
}

} // namespace PanelKestrin
