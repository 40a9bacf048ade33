#include <PanelKestrin/propertybag.h>

namespace PanelKestrin {

QVariant PropertyBag::ReadProperty(const QString &Name, const QVariant &DefaultValue) const
{
    return m_values.value(Name, DefaultValue);
}

void PropertyBag::WriteProperty(const QString &Name, const QVariant &Value, const QVariant &DefaultValue)
{
    if (Value == DefaultValue)
        m_values.remove(Name);
    else
        m_values.insert(Name, Value);
}

bool PropertyBag::contains(const QString &Name) const
{
    return m_values.contains(Name);
}

QVariantMap PropertyBag::toVariantMap() const
{
    return m_values;
}

PropertyBag PropertyBag::fromVariantMap(const QVariantMap &values)
{
    PropertyBag bag;
    bag.m_values = values;
    return bag;
}

} // namespace PanelKestrin
