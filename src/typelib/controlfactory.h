#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <QStringList>

class QWidget;

namespace PanelKestrin {

// The published classes, in the order of the type description.
PANELKESTRIN_EXPORT QStringList PublishedControlNames();

// A new control of a published class named as the type description names it ("TrnControl",
// "gridcontrol" ...; any case), owned by parent; null for any other name.
PANELKESTRIN_EXPORT QWidget *CreateControl(const QString &className, QWidget *parent = nullptr);

} // namespace PanelKestrin
