#pragma once

// One published control as Qt Designer's widget box offers it: its class (as form files name
// it), header, icon, tool tip, and a new instance for the form being edited.

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

namespace PanelKestrin {

struct ControlEntry
{
    const char *className;   // the published class, e.g. "TrnControl"
    const char *header;      // "trncontrol.h", under PanelKestrin/
    const char *icon;        // a resource path
    const char *toolTip;
    const char *whatsThis;
};

class ControlPlugin : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    ControlPlugin(const ControlEntry &entry, QObject *parent);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override;

private:
    const ControlEntry &m_entry;
    bool m_initialized = false;
};

} // namespace PanelKestrin
