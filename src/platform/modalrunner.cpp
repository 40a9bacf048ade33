#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/runtimeerror.h>

#include <QDialog>
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <utility>

namespace PanelKestrin {

namespace {

ModalRunner &modalRunner()
{
    static ModalRunner runner;
    return runner;
}

SaveFileNameHandler &saveFileNameHandler()
{
    static SaveFileNameHandler handler;
    return handler;
}

PrinterDialogHandler &printerDialogHandler()
{
    static PrinterDialogHandler handler;
    return handler;
}

} // namespace

int ShowModal(QDialog *form)
{
    if (!form)
        throw RuntimeError(ErrObjectNotSet, QString(), QStringLiteral("ShowModal"));
    // Copies, so that a runner may replace itself while it runs.
    if (const ModalRunner runner = modalRunner())
        return runner(form);
    return form->exec();
}

ModalRunner setModalRunner(ModalRunner runner)
{
    return std::exchange(modalRunner(), std::move(runner));
}

QString GetSaveFileName(QWidget *parent, const QString &title, const QString &filter,
                        const QString &initialPath)
{
    if (const SaveFileNameHandler handler = saveFileNameHandler())
        return handler(parent, title, filter, initialPath);
    return QFileDialog::getSaveFileName(parent, title, initialPath, filter);
}

SaveFileNameHandler setSaveFileNameHandler(SaveFileNameHandler handler)
{
    return std::exchange(saveFileNameHandler(), std::move(handler));
}

int RunPrinterDialog(QPrinter *printer, QWidget *parent)
{
    if (!printer)
        throw RuntimeError(ErrObjectNotSet, QString(), QStringLiteral("RunPrinterDialog"));
    if (const PrinterDialogHandler handler = printerDialogHandler())
        return handler(printer, parent);
    QPrintDialog dialog(printer, parent);
    return dialog.exec();
}

PrinterDialogHandler setPrinterDialogHandler(PrinterDialogHandler handler)
{
    return std::exchange(printerDialogHandler(), std::move(handler));
}

} // namespace PanelKestrin
