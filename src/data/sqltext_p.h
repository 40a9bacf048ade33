#pragma once

#include <QString>

namespace PanelKestrin {

// True when the text (blanks around it ignored) is a bare table name such as orders or
// sales.orders, which a recordset reads as every row of that table.
bool isBareTableName(const QString &text);

// The one statement the text holds, cut before its terminating ';' (outside quotes, quoted
// identifiers, dollar-quoted strings and comments) so that blanks, comments or further ';'
// after it do not reach the driver. `several` is set when anything else follows a ';':
// connections run one statement per call, so a value pasted into a statement can never
// append a second one.
QString singleStatement(const QString &text, bool &several);

} // namespace PanelKestrin
