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

    // The one settings object of the process; user-interface thread only.
    static ConnectionSettings &instance();

    // The connection string the print form opens its own connection with
    // ("Provider=SQLite;Data Source=..." or "Provider=PostgreSQL;Host=...;Port=...;..."). Empty
    // until the host sets it.
    QString ConnectString() const { return m_connectString; }
    void setConnectString(const QString &ConnectString) { m_connectString = ConnectString; }
    // Which statement the print form builds for a data report: 1 orders by the chosen field
    // unless it is the table's primary key, 2 always orders by it, any other value (0 at
    // start-up) also turns the "+" text joins of the report's query into "||".
    qint16 DatabaseKind() const { return m_databaseKind; }
    void setDatabaseKind(qint16 DatabaseKind) { m_databaseKind = DatabaseKind; }

    // The filters the grid editor runs each typed character of a numeric column through: the
    // integer filter for columns without decimals, the decimal filter (given the edit box, the
    // column's decimals and the digits allowed before the point) for the others. Each returns
    // the character code to use, 0 to refuse it.
    qint16 IntegerKeyFilter(qint16 KeyAscii) const;
    qint16 DecimalKeyFilter(qint16 KeyAscii, QLineEdit *EditBox, qint16 Decimals, qint16 IntegerDigits) const;
    // Replaces a filter; an empty function restores the built-in one.
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

