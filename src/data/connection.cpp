#include <PanelKestrin/connection.h>

#include "data/connection_p.h"
#include "data/connectionstring_p.h"
#include "data/dataerror_p.h"
#include "shared/conversions_p.h"

#include <PanelKestrin/variant.h>

#include <QAtomicInteger>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Connection");

QString uniqueQtConnectionName()
{
    static QAtomicInteger<quint64> counter;
    return QStringLiteral("PanelKestrin.Connection.%1").arg(counter.fetchAndAddRelaxed(1) + 1);
}

// A parameter as the engine should receive it: NULL for Null and Empty, text as text (even a
// null QString), date-times as the text form each engine compares and stores correctly,
// booleans as 1/0 on SQLite.
QVariant bindable(const QVariant &value, Connection::Engine engine)
{
    if (isEmpty(value) || isNull(value))
        return QVariant(QMetaType::fromType<QString>());
    switch (value.metaType().id()) {
    case QMetaType::QString:
        // QtSql binds a null QString as NULL; text, even empty, is text (Null() binds NULL).
        return value.toString().isNull() ? QVariant(QString(QLatin1String(""))) : value;
    case QMetaType::QDateTime: {
        const QDateTime dt = value.toDateTime();
        return dt.toString(dt.time().msec() ? QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")
                                            : QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    case QMetaType::QDate:
        return value.toDate().toString(Qt::ISODate);
    case QMetaType::Bool:
        return engine == Connection::EngineSQLite ? QVariant(value.toBool() ? 1 : 0) : value;
    default:
        return value;
    }
}

} // namespace

Connection::Connection(QObject *parent) : QObject(parent), d(std::make_unique<ConnectionPrivate>()) {}

Connection::~Connection()
{
    if (d->engine != EngineNone)
        Close();
}

QString Connection::ConnectionString() const
{
    return d->connectionString;
}

void Connection::setConnectionString(const QString &ConnectionString)
{
    if (State())
        raiseDataError(ErrObjectOpen, tr("Close the connection before changing its connection string."), kSource);
    d->connectionString = ConnectionString;
}

qint32 Connection::State() const
{
    return d->isOpen() ? 1 : 0;
}

QString Connection::Provider() const
{
    return d->provider;
}

Connection::Engine Connection::engine() const
{
    return d->engine;
}

bool Connection::isReadOnly() const
{
    return d->readOnly;
}

void Connection::checkOpen() const
{
    if (!State())
        raiseDataError(ErrConnectionInvalid, tr("The connection is not open."), kSource);
}

void Connection::Open(const QString &ConnectionString, const QString &UserID, const QString &Password, qint32 Options)
{
    Q_UNUSED(Options)
    if (State())
        raiseDataError(ErrObjectOpen, tr("The connection is already open."), kSource);
    const QString text = ConnectionString.isEmpty() ? d->connectionString : ConnectionString;
    if (text.trimmed().isEmpty())
        raiseDataError(ErrBadArguments, tr("The connection string is empty."), kSource);
    const ConnectionStringParts parts = ConnectionStringParts::parse(text);

    const QString provider = parts.value({"provider"}).trimmed();
    const QString key = provider.toLower();
    Engine engine = EngineNone;
    QString driver;
    if (key == QLatin1String("sqlite") || key == QLatin1String("sqlite3")) {
        engine = EngineSQLite;
        driver = QStringLiteral("QSQLITE");
    } else if (key == QLatin1String("postgresql") || key == QLatin1String("postgres")) {
        engine = EnginePostgreSQL;
        driver = QStringLiteral("QPSQL");
    } else {
        raiseDataError(ErrProviderNotFound,
                       provider.isEmpty() ? tr("The connection string names no Provider (SQLite or PostgreSQL).")
                                          : tr("Provider \"%1\" is not known; use SQLite or PostgreSQL.").arg(provider),
                       kSource);
    }
    if (!QSqlDatabase::isDriverAvailable(driver))
        raiseDataError(ErrProviderNotFound, tr("The Qt SQL driver %1 is not installed.").arg(driver), kSource);

    const bool readOnly = parts.value({"mode"}).simplified().compare(QLatin1String("read"), Qt::CaseInsensitive) == 0;
    QString location;
    QString databaseName;
    QString connectOptions;
    QString host;
    int port = -1;
    if (engine == EngineSQLite) {
        const QString source = parts.value({"data source", "database", "filename"});
        if (source.isEmpty())
            raiseDataError(ErrBadArguments, tr("The connection string names no Data Source (a file or :memory:)."),
                           kSource);
        if (source == QLatin1String(":memory:")) {
            location = source;
            databaseName = source;
            connectOptions = readOnly ? QStringLiteral("QSQLITE_OPEN_READONLY") : QString();
        } else {
            const QFileInfo file(source);
            location = file.absoluteFilePath();
            if (!file.exists() || file.isDir())
                raiseDataError(ErrOpenFailed, tr("The SQLite database file \"%1\" does not exist.").arg(location),
                               kSource);
            // A URI with an explicit mode: SQLite then never creates a missing file.
            databaseName = QUrl::fromLocalFile(location).toString(QUrl::FullyEncoded)
                           + (readOnly ? QStringLiteral("?mode=ro") : QStringLiteral("?mode=rw"));
            connectOptions = readOnly ? QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY")
                                      : QStringLiteral("QSQLITE_OPEN_URI");
        }
    } else {
        host = parts.value({"host", "server", "data source", "hostname"});
        const QString portText = parts.value({"port"});
        if (!portText.isEmpty()) {
            bool ok = false;
            port = portText.trimmed().toInt(&ok);
            if (!ok || port <= 0 || port > 65535)
                raiseDataError(ErrBadArguments, tr("Port \"%1\" is not a port number.").arg(portText), kSource);
        }
        databaseName = parts.value({"database", "initial catalog", "dbname"});
        location = QStringLiteral("%1:%2").arg(host.isEmpty() ? QStringLiteral("localhost") : host)
                       .arg(port > 0 ? port : 5432);
        // Server notices ("table does not exist, skipping") are not errors; the session
        // sends warnings and above only. Date texts in statements (a print query's picked
        // range) are written by CStr in the user's short-date pattern, so the session reads
        // them in the user's day/month order; dates come back in ISO form whatever the order.
        // In read mode every transaction of the session defaults to read-only, so no
        // statement can change data.
        const bool dayFirst = userDateOrder() == DateOrder::DayFirst;
        connectOptions = QStringLiteral("connect_timeout=15;options='-c client_min_messages=warning"
                                        " -c datestyle=ISO,%1%2'")
                             .arg(dayFirst ? QStringLiteral("DMY") : QStringLiteral("MDY"),
                                  readOnly ? QStringLiteral(" -c default_transaction_read_only=on") : QString());
    }

    const QString name = uniqueQtConnectionName();
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(driver, name);
        db.setDatabaseName(databaseName);
        db.setConnectOptions(connectOptions);
        if (engine == EnginePostgreSQL) {
            if (!host.isEmpty())
                db.setHostName(host);
            if (port > 0)
                db.setPort(port);
            db.setUserName(UserID.isEmpty() ? parts.value({"user id", "uid", "user", "username"}) : UserID);
            db.setPassword(Password.isEmpty() ? parts.value({"password", "pwd"}) : Password);
        }
        d->database = db;
    }
    auto discard = [this, &name] {
        d->metadata.reset();
        d->database.close();
        d->database = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    };
    if (!d->database.open()) {
        const QString message = d->database.lastError().text();
        discard();
        raiseDataError(ErrOpenFailed,
                       engine == EngineSQLite
                           ? tr("Cannot open the SQLite database \"%1\": %2").arg(location, message)
                           : tr("Cannot connect to the PostgreSQL server at %1 (database \"%2\"): %3")
                                 .arg(location, databaseName, message),
                       kSource);
    }
    try {
        d->metadata = engine == EngineSQLite ? createSqliteMetadata(d->database) : createPostgresMetadata(d->database);
    } catch (...) {
        discard();
        throw;
    }
    d->qtConnectionName = name;
    d->connectionString = text;
    d->provider = engine == EngineSQLite ? QStringLiteral("SQLite") : QStringLiteral("PostgreSQL");
    d->engine = engine;
    d->readOnly = readOnly;
    d->location = location;
}

void Connection::Close()
{
    if (d->engine == EngineNone)
        raiseDataError(ErrObjectClosed, tr("The connection is not open."), kSource);
    d->metadata.reset();
    d->database.close();
    d->database = QSqlDatabase();
    QSqlDatabase::removeDatabase(d->qtConnectionName);
    d->qtConnectionName.clear();
    d->engine = EngineNone;
    d->readOnly = false;
}

qint32 Connection::Execute(const QString &CommandText)
{
    return run(CommandText, nullptr);
}

qint32 Connection::Execute(const QString &CommandText, const QVariantList &Parameters)
{
    return run(CommandText, &Parameters);
}

qint32 Connection::run(const QString &CommandText, const QVariantList *Parameters)
{
    checkOpen();
    if (CommandText.trimmed().isEmpty())
        raiseDataError(ErrBadArguments, tr("The command text is empty."), kSource);
    auto rejected = [&CommandText](const QString &message) {
        raiseDataError(ErrCommandFailed, tr("%1 (statement: %2)").arg(message, CommandText), kSource);
    };
    bool several = false;
    const QString sql = d->metadata->singleStatement(CommandText, Parameters != nullptr, several);
    if (several)
        rejected(tr("Only one statement can be run at a time."));

    QSqlQuery query(d->database);
    query.setForwardOnly(true);
    const qint64 mark = d->metadata->changeMark();
    bool ok = false;
    if (Parameters) {
        if (!query.prepare(sql))
            rejected(query.lastError().text());
        for (const QVariant &value : *Parameters)
            query.addBindValue(bindable(value, d->engine));
        ok = query.exec();
    } else {
        ok = query.exec(sql);
    }
    if (!ok)
        rejected(query.lastError().text());
    return d->metadata->recordsAffected(query, mark);
}

} // namespace PanelKestrin
