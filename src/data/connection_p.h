#pragma once

#include <PanelKestrin/connection.h>

#include "data/enginemetadata_p.h"

#include <QSqlDatabase>

#include <memory>

namespace PanelKestrin {

struct ConnectionPrivate {
    QString connectionString;
    QString provider;
    Connection::Engine engine = Connection::EngineNone;
    bool readOnly = false;
    QString location; // the file or host:port, for error descriptions
    QString qtConnectionName;
    QSqlDatabase database;
    std::unique_ptr<EngineMetadata> metadata;

    bool isOpen() const { return engine != Connection::EngineNone && database.isOpen(); }
};

// How the recordset reaches the session underneath a Connection.
struct ConnectionAccess {
    static ConnectionPrivate *get(const Connection *connection) { return connection->d.get(); }
};

} // namespace PanelKestrin
