#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>

class QWidget;

namespace PanelKestrin {

// A new control of a published class named as the type description names it ("TrnControl",
// "gridcontrol" ...; any case), owned by parent; null for any other name.
PANELKESTRIN_EXPORT QWidget *CreateControl(const QString &className, QWidget *parent = nullptr);

} // namespace PanelKestrin
