#pragma once

#include <QString>

namespace PanelKestrin { class Connection; }

// The demo's order-entry database: customers, items, orders and order lines.
namespace DemoDatabase {

// Creates and fills the database file on first run (the folder too); an existing file is left
// as it is. Throws PanelKestrin::RuntimeError when the file cannot be created or filled.
void ensureExists(const QString &path);

// Creates the tables and fills them with a few hundred rows, always the same ones.
void createAndFill(PanelKestrin::Connection &cn);

} // namespace DemoDatabase
