#pragma once

class QDir;
class QTextStream;

// The tour's print queries: the customer form's Print through the report engine and the order
// lines form's Print through the data report, once for each destination, with a screenshot of
// the print query form as filled in and each output written (the preview's picture, the file,
// the printer's job when the machine has a printer); then the order lines form's own report
// with the print options panel beside it, to a file. False when a step failed.
bool writeTourPrintQueries(const QDir &dir, QTextStream &out);
