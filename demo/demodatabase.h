#pragma once

#include <QString>

namespace PanelKestrin { class Connection; }

// The demo's order-entry database: customers, items, orders and order lines.
namespace DemoDatabase {

// Creates the SQLite database file on first run (the folder too) as an empty database; an
// existing file is left as it is. Throws PanelKestrin::RuntimeError when it cannot.
void ensureFile(const QString &path);

// Creates and fills the tables when the database has none of them yet, in one transaction:
// a failure leaves the database as it was. Works on every engine the library opens.
void ensureFilled(PanelKestrin::Connection &cn);

// Creates the tables and fills them with a few hundred rows, always the same ones.
void createAndFill(PanelKestrin::Connection &cn);

} // namespace DemoDatabase
