#pragma once

#include <QString>

namespace PanelKestrin {

// True when the text (blanks around it ignored) is a bare table name such as orders or
// sales.orders, which a recordset reads as every row of that table.
bool isBareTableName(const QString &text);

// True when the text holds more than one statement: a ';' outside quotes, quoted
// identifiers, dollar-quoted strings and comments that is followed by anything but blanks,
// comments or further ';'. Connections run one statement per call so that a value pasted
// into a statement can never append a second one.
bool hasSeveralStatements(const QString &text);

} // namespace PanelKestrin
