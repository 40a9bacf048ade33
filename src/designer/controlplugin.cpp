#include "controlplugin.h"

#include <PanelKestrin/controlfactory.h>

#include <QCoreApplication>
#include <QIcon>
#include <QWidget>

namespace PanelKestrin {

ControlPlugin::ControlPlugin(const ControlEntry &entry, QObject *parent) : QObject(parent), m_entry(entry)
{
}

// Form files name the class with its namespace, as the compiled forms declare it.
QString ControlPlugin::name() const
{
    return QStringLiteral("PanelKestrin::") + QLatin1String(m_entry.className);
}

QString ControlPlugin::group() const
{
    return QStringLiteral("PanelKestrin");
}

QString ControlPlugin::toolTip() const
{
    return QCoreApplication::translate("PanelKestrin::ControlPlugin", m_entry.toolTip);
}

QString ControlPlugin::whatsThis() const
{
    return QCoreApplication::translate("PanelKestrin::ControlPlugin", m_entry.whatsThis);
}

QString ControlPlugin::includeFile() const
{
    return QStringLiteral("PanelKestrin/") + QLatin1String(m_entry.header);
}

QIcon ControlPlugin::icon() const
{
    return QIcon(QLatin1String(m_entry.icon));
}

bool ControlPlugin::isContainer() const
{
    return false;
}

QWidget *ControlPlugin::createWidget(QWidget *parent)
{
    return CreateControl(QLatin1String(m_entry.className), parent);
}

bool ControlPlugin::isInitialized() const
{
    return m_initialized;
}

void ControlPlugin::initialize(QDesignerFormEditorInterface *)
{
    m_initialized = true;
}

// A new control on a form is named after its class, numbered from 1 by Designer.
QString ControlPlugin::domXml() const
{
    const QString cls = QLatin1String(m_entry.className);
    return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\"/></ui>").arg(name(), cls);
}

} // namespace PanelKestrin
