// The PanelKestrin demo: a small order-entry application over an embedded SQLite database, or
// any database the library connects to (--connect), whose tables it creates and fills on first
// run. Without a display, run it with --tour <folder> (the demo script does) to open every form
// offscreen and write screenshots and reports.
#include "democonfig.h"
#include "demodatabase.h"
#include "mainwindow.h"
#include "tour.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/runtimeerror.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

using namespace PanelKestrin;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("PanelKestrin"));
    QApplication::setApplicationName(QStringLiteral("panelkestrin-demo"));
    QApplication::setApplicationDisplayName(QStringLiteral("PanelKestrin Order Entry"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("PanelKestrin order-entry demo"));
    parser.addHelpOption();
    const QCommandLineOption tourOption(QStringLiteral("tour"),
        QStringLiteral("Run the scripted tour and write screenshots and reports to <folder>."), QStringLiteral("folder"));
    const QCommandLineOption databaseOption(QStringLiteral("database"),
        QStringLiteral("Use the SQLite database <file> (created and filled when missing)."), QStringLiteral("file"));
    const QCommandLineOption connectOption(QStringLiteral("connect"),
        QStringLiteral("Use the database of <connection string>, for example \"Provider=PostgreSQL;Host=localhost;"
                       "Database=shop;User ID=me;Password=secret\" (its tables are created and filled when missing)."),
        QStringLiteral("connection string"));
    parser.addOption(tourOption);
    parser.addOption(databaseOption);
    parser.addOption(connectOption);
    parser.process(app);

    const DemoConfig config = DemoConfig::load(parser.value(databaseOption), parser.value(connectOption));
    Connection connection;
    try {
        if (config.usesFile())
            DemoDatabase::ensureFile(config.databasePath);
        ConnectionSettings::instance().setConnectString(config.connectString());
        ConnectionSettings::instance().setDatabaseKind(config.databaseKind);
        connection.Open(config.connectString());
        DemoDatabase::ensureFilled(connection);
    } catch (const RuntimeError &e) {
        QTextStream(stderr) << "Cannot open the demo database: " << e.Description() << Qt::endl;
        return 1;
    }

    DemoContext context{&connection};
    MainWindow window(context, config.description());
    if (parser.isSet(tourOption))
        return runTour(window, parser.value(tourOption));
    window.show();
    return app.exec();
}
