#pragma once

// Regional settings for a test: a registry store of the test's own, in a temporary folder, so
// that neither the user's store nor a test running beside it sees what the test writes.

#include <PanelKestrin/registry.h>

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtGlobal>

namespace RegionalTest {

using namespace PanelKestrin;

// One user's settings under HKEY_CURRENT_USER "\Control Panel\International".
struct Settings {
    QString shortDate; // sShortDate
    QString decimal;   // sDecimal
    QString separator; // sDate
};

inline Settings us() { return {QStringLiteral("M/d/yyyy"), QStringLiteral("."), QStringLiteral("/")}; }
inline Settings uk() { return {QStringLiteral("dd/MM/yyyy"), QStringLiteral("."), QStringLiteral("/")}; }
inline Settings german() { return {QStringLiteral("dd.MM.yyyy"), QStringLiteral(","), QStringLiteral(".")}; }
// What a machine with the C locale and an empty store gives.
inline Settings classic() { return {QStringLiteral("MM/dd/yyyy"), QStringLiteral("."), QStringLiteral("/")}; }

// While it lives, the registry store is a fresh file in a temporary folder (the store's
// folder follows XDG_CONFIG_HOME, which QStandardPaths' test mode would override, so the
// mode is turned off). Destroying it empties that store and gives back the previous folder.
class Scope
{
public:
    Scope()
        : m_testMode(QStandardPaths::isTestModeEnabled()), m_hadConfigHome(qEnvironmentVariableIsSet("XDG_CONFIG_HOME")),
          m_configHome(qgetenv("XDG_CONFIG_HOME"))
    {
        QStandardPaths::setTestModeEnabled(false);
        qputenv("XDG_CONFIG_HOME", m_dir.path().toLocal8Bit());
    }
    ~Scope()
    {
        clear();
        if (m_hadConfigHome)
            qputenv("XDG_CONFIG_HOME", m_configHome);
        else
            qunsetenv("XDG_CONFIG_HOME");
        QStandardPaths::setTestModeEnabled(m_testMode);
    }
    Scope(const Scope &) = delete;
    Scope &operator=(const Scope &) = delete;

    void set(const Settings &s)
    {
        write(QStringLiteral("sShortDate"), s.shortDate);
        write(QStringLiteral("sDecimal"), s.decimal);
        write(QStringLiteral("sDate"), s.separator);
    }
    // Back to the defaults of the user's locale.
    void clear()
    {
        for (const char *name : {"sShortDate", "sDecimal", "sDate"})
            DeleteRegValue(HKEY_CURRENT_USER, key(), QLatin1String(name));
    }

private:
    static QString key() { return QStringLiteral("\\Control Panel\\International"); }
    void write(const QString &name, const QString &value)
    {
        SetRegValue(HKEY_CURRENT_USER, key(), name, value);
    }

    QTemporaryDir m_dir;
    bool m_testMode;
    bool m_hadConfigHome;
    QByteArray m_configHome;
};

} // namespace RegionalTest
