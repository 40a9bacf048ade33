#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QObject>
#include <QString>

#include <functional>

class QLineEdit;

namespace PanelKestrin {

// The process-wide settings the host fills: the connection string reports open, the database
// kind that selects their SQL variant (1, 2 or another value), and the keystroke filters the
// grid editor uses for numeric columns. The filters start as the built-in ones
// (keystrokefilters.h); a host may replace either, and an empty function restores it.
class PANELKESTRIN_EXPORT ConnectionSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString ConnectString READ ConnectString WRITE setConnectString)
    Q_PROPERTY(qint16 DatabaseKind READ DatabaseKind WRITE setDatabaseKind)

public:
    using IntegerKeyFilterFunction = std::function<qint16(qint16 KeyAscii)>;
    using DecimalKeyFilterFunction =
        std::function<qint16(qint16 KeyAscii, QLineEdit *EditBox, qint16 Decimals, qint16 IntegerDigits)>;

    static ConnectionSettings &instance();

    QString ConnectString() const { return m_connectString; }
    void setConnectString(const QString &ConnectString) { m_connectString = ConnectString; }
    qint16 DatabaseKind() const { return m_databaseKind; }
    void setDatabaseKind(qint16 DatabaseKind) { m_databaseKind = DatabaseKind; }

    qint16 IntegerKeyFilter(qint16 KeyAscii) const;
    qint16 DecimalKeyFilter(qint16 KeyAscii, QLineEdit *EditBox, qint16 Decimals, qint16 IntegerDigits) const;
    void setIntegerKeyFilter(IntegerKeyFilterFunction filter);
    void setDecimalKeyFilter(DecimalKeyFilterFunction filter);

private:
    ConnectionSettings() = default;

    QString m_connectString;
    qint16 m_databaseKind = 0;
    IntegerKeyFilterFunction m_integerFilter;
    DecimalKeyFilterFunction m_decimalFilter;
};

} // namespace PanelKestrin

