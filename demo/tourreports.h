#pragma once

class QDir;
class QString;
class QTextStream;

// The reports part of the tour: the report engine runs each of the demo's report files to PDF,
// text and RTF (report-<name>.pdf, ...), the data report prints an order list made of
// ready-made lines to the same three formats, and the engine's preview window is opened
// offscreen on the order-lines report and photographed. Every file goes to dir and is named
// on out. Returns false when any of them could not be written.
bool writeTourReports(const QDir &dir, QTextStream &out);

// Names path on out as written when the file holds something, else as not written; whether it
// does.
bool fileWritten(const QString &path, QTextStream &out);
