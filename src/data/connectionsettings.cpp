#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/keystrokefilters.h>

namespace PanelKestrin {

ConnectionSettings &ConnectionSettings::instance()
{
    static ConnectionSettings settings;
    return settings;
}

qint16 ConnectionSettings::IntegerKeyFilter(qint16 KeyAscii) const
{
    return m_integerFilter ? m_integerFilter(KeyAscii) : PanelKestrin::IntegerKeyFilter(KeyAscii);
}

qint16 ConnectionSettings::DecimalKeyFilter(qint16 KeyAscii, QLineEdit *EditBox, qint16 Decimals,
                                            qint16 IntegerDigits) const
{
    return m_decimalFilter ? m_decimalFilter(KeyAscii, EditBox, Decimals, IntegerDigits)
                           : PanelKestrin::DecimalKeyFilter(KeyAscii, EditBox, Decimals, IntegerDigits);
}

void ConnectionSettings::setIntegerKeyFilter(IntegerKeyFilterFunction filter)
{
    m_integerFilter = std::move(filter);
}

void ConnectionSettings::setDecimalKeyFilter(DecimalKeyFilterFunction filter)
{
    m_decimalFilter = std::move(filter);
}

} // namespace PanelKestrin
