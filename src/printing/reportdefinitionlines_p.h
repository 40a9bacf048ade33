#pragma once

#include <QByteArray>
#include <QVariant>
#include <QVector>

namespace PanelKestrin {

// Where things are in the text of a report file, for error messages: QJsonDocument checks the
// syntax but keeps no positions, so these read the line back from the text itself.

// The line (from 1) holding byte offset of text.
int reportLineAtOffset(const QByteArray &text, int offset);

// The line of the member or element that path leads to in a syntactically valid JSON text:
// each step is an object key (QString) or an array index (int). For an object member it is the
// line of its key. When a step cannot be followed, the line of the last one that could.
int reportLineOfPath(const QByteArray &text, const QVector<QVariant> &path);

} // namespace PanelKestrin
