#include <PanelKestrin/controlfactory.h>
#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/printsetup.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/usercontrol1.h>

namespace PanelKestrin {

namespace {

template <typename Control>
QWidget *make(QWidget *parent)
{
    return new Control(parent);
}

// The C++ class behind each published class.
struct Maker
{
    const char *name;
    QWidget *(*create)(QWidget *parent);
};

const Maker makers[] = {
    {"UserControl1", &make<UserControl1>}, {"gridcontrol", &make<gridcontrol>}, {"GridPanel", &make<GridPanel>},
    {"DTControl", &make<DTControl>},       {"TrnControl", &make<TrnControl>},   {"PrintSetup", &make<PrintSetup>},
};

} // namespace

QWidget *CreateControl(const QString &className, QWidget *parent)
{
    for (const Maker &m : makers) {
        if (className.compare(QLatin1String(m.name), Qt::CaseInsensitive) == 0)
            return m.create(parent);
    }
    return nullptr;
}

} // namespace PanelKestrin
