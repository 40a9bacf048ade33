#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QVariant>
#include <QVariantMap>

namespace PanelKestrin {

// The design-time properties of a control, as its host form saves and loads them. Only values
// that differ from their defaults are stored, so reading a property that was written with its
// default value, or never written, gives the default the reader asks for.
class PANELKESTRIN_EXPORT PropertyBag
{
public:
    PropertyBag() = default;

    QVariant ReadProperty(const QString &Name, const QVariant &DefaultValue = QVariant()) const;
    // Stores Value under Name, or removes Name when Value equals DefaultValue.
    void WriteProperty(const QString &Name, const QVariant &Value,
                       const QVariant &DefaultValue = QVariant());

    bool contains(const QString &Name) const;
    QVariantMap toVariantMap() const;
    static PropertyBag fromVariantMap(const QVariantMap &values);

private:
    QVariantMap m_values;
};

} // namespace PanelKestrin
