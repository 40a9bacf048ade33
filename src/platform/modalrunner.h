#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <functional>

class QDialog;
class QPrinter;
class QWidget;

namespace PanelKestrin {

// Every modal form, save-as dialog and printer dialog a control opens goes through these
// runners, so that a test (or a host) can inspect what was opened and answer it instead of
// blocking in a nested event loop. Each setter takes an empty function to restore the default and returns the
// handler it replaced.

using ModalRunner = std::function<int(QDialog *form)>;
using SaveFileNameHandler = std::function<QString(QWidget *parent, const QString &title,
                                                  const QString &filter, const QString &initialPath)>;
using PrinterDialogHandler = std::function<int(QPrinter *printer, QWidget *parent)>;

// Shows form modally and returns its result code (QDialog::Accepted / Rejected or the value
// passed to done()). Default: form->exec(). Raises RuntimeError 91 for a null form.
PANELKESTRIN_EXPORT int ShowModal(QDialog *form);
PANELKESTRIN_EXPORT ModalRunner setModalRunner(ModalRunner runner);

// Asks for a file name to save to; "" when the user cancels. filter uses Qt's syntax
// ("Text files (*.txt);;All files (*)"). Default: QFileDialog::getSaveFileName.
PANELKESTRIN_EXPORT QString GetSaveFileName(QWidget *parent, const QString &title,
                                            const QString &filter,
                                            const QString &initialPath = QString());
PANELKESTRIN_EXPORT SaveFileNameHandler setSaveFileNameHandler(SaveFileNameHandler handler);

// Lets the user choose and set up the printer; returns QDialog::Accepted when the settings
// were confirmed (and written to printer), QDialog::Rejected otherwise. Default: QPrintDialog.
// Raises RuntimeError 91 for a null printer.
PANELKESTRIN_EXPORT int RunPrinterDialog(QPrinter *printer, QWidget *parent);
PANELKESTRIN_EXPORT PrinterDialogHandler setPrinterDialogHandler(PrinterDialogHandler handler);

} // namespace PanelKestrin
