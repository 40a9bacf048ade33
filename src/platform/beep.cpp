#include <PanelKestrin/beep.h>

#include <QApplication>
#include <utility>

namespace PanelKestrin {

namespace {

std::function<void()> &beepHandler()
{
    static std::function<void()> handler;
    return handler;
}

} // namespace

void Beep()
{
    if (const std::function<void()> handler = beepHandler()) {
        handler();
        return;
    }
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        QApplication::beep();
}

std::function<void()> setBeepHandler(std::function<void()> handler)
{
    return std::exchange(beepHandler(), std::move(handler));
}

} // namespace PanelKestrin
