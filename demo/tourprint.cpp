#include "tourprint.h"

#include "customerform.h"
#include "tourreports.h"
#include "orderlinesform.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/printsetup.h>
#include <PanelKestrin/trncontrol.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTextStream>

#include <functional>

using namespace PanelKestrin;

namespace {

const char *const kDestinations[] = {"screen", "printer", "file"};

bool saved(QWidget *widget, const QString &path, QTextStream &out)
{
    QApplication::processEvents();
    if (!widget->grab().save(path)) {
        out << "could not write " << QDir::toNativeSeparators(path) << Qt::endl;
        return false;
    }
    out << "wrote " << QDir::toNativeSeparators(path) << Qt::endl;
    return true;
}

template <typename W>
W *child(QWidget *form, const QString &name)
{
    return form->findChild<W *>(name);
}

// The message boxes, errors, modal forms and save dialogs of one print, answered by script.
class PrintScript
{
public:
    PrintScript(QTextStream &out, std::function<int(QDialog *)> modal, QString saveAs) : m_out(out)
    {
        m_box = setMessageBoxHandler([this](const QString &prompt, int, const QString &) {
            m_out << "message: " << prompt << Qt::endl;
            return int(vbOK);
        });
        m_reporter = setErrorReporter([this](const RuntimeError &e) {
            m_out << "error " << e.Number() << ": " << e.Description() << Qt::endl;
            failed = true;
        });
        m_runner = setModalRunner(std::move(modal));
        m_save = setSaveFileNameHandler(
            [saveAs](QWidget *, const QString &, const QString &, const QString &) { return saveAs; });
    }
    ~PrintScript()
    {
        setSaveFileNameHandler(m_save);
        setModalRunner(m_runner);
        setErrorReporter(m_reporter);
        setMessageBoxHandler(m_box);
    }
    bool failed = false;

private:
    QTextStream &m_out;
    MessageBoxHandler m_box;
    ErrorReporter m_reporter;
    ModalRunner m_runner;
    SaveFileNameHandler m_save;
};

// One Print of a form's toolbar to a destination: the print query form is filled as a user
// would, photographed, and run; a preview it opens is photographed too.
bool printQuery(const QString &name, int destination, const std::function<void()> &pressPrint, const QDir &dir,
                QTextStream &out)
{
    const QString stem = dir.filePath(QStringLiteral("print-%1-%2").arg(name, QLatin1String(kDestinations[destination])));
    const QString file = stem + QStringLiteral(".txt");
    const bool printer = !QPrinterInfo::availablePrinters().isEmpty();
    bool ok = true;
    bool formShown = false;
    PrintScript script(
        out,
        [&](QDialog *form) {
            if (form->objectName() != QLatin1String("frmprint")) { // the report preview
                form->resize(820, 900);
                form->show();
                ok = saved(form, stem + QStringLiteral("-preview.png"), out) && ok;
                return int(QDialog::Accepted);
            }
            formShown = true;
            form->show();
            child<QRadioButton>(form, QStringLiteral("optoutput_%1").arg(destination))->click();
            child<QLineEdit>(form, QStringLiteral("txtfrompage"))->setText(QStringLiteral("1"));
            child<QLineEdit>(form, QStringLiteral("txttopage"))->setText(QStringLiteral("1"));
            child<QLineEdit>(form, QStringLiteral("txtfilename"))->setText(file);
            ok = saved(form, stem + QStringLiteral("-form.png"), out) && ok;
            if (destination != 1 || printer)
                child<QPushButton>(form, QStringLiteral("cmdOK"))->click();
            else
                out << "no printer on this machine: " << name << " not printed" << Qt::endl;
            if (form->isVisible())
                child<QPushButton>(form, QStringLiteral("cmdcancel"))->click();
            return int(QDialog::Accepted);
        },
        file);
    pressPrint();
    if (destination == 2)
        ok = fileWritten(file, out) && ok;
    return ok && formShown && !script.failed;
}

// The order lines form's own report with the options of the panel beside its button: the file
// option chosen in the panel, the focus taken to the button (the panel then writes its settings
// into the report engine), the button pressed.
bool panelReport(OrderLinesForm &form, const QDir &dir, QTextStream &out)
{
    const QString file = dir.filePath(QStringLiteral("print-order-lines-panel.txt"));
    PrintScript script(out, [](QDialog *) { return int(QDialog::Rejected); }, file);
    auto *panel = form.findChild<PrintSetup *>(QStringLiteral("PrintSetup1"));
    auto *button = child<QPushButton>(&form, QStringLiteral("cmdReport"));
    QApplication::setActiveWindow(&form);
    auto *from = child<QLineEdit>(panel, QStringLiteral("txtfrompage"));
    from->setFocus();
    from->setText(QStringLiteral("1"));
    child<QLineEdit>(panel, QStringLiteral("txttopage"))->setText(QStringLiteral("1"));
    child<QRadioButton>(panel, QStringLiteral("optoutput_2"))->click();
    bool ok = saved(&form, dir.filePath(QStringLiteral("print-order-lines-panel.png")), out);
    button->setFocus();
    button->click();
    return fileWritten(file, out) && ok && !script.failed;
}

} // namespace

bool writeTourPrintQueries(const QDir &dir, QTextStream &out)
{
    Connection cn;
    cn.Open(ConnectionSettings::instance().ConnectString());
    CustomerForm customers(cn);
    OrderLinesForm lines(cn);
    bool ok = true;
    for (int destination = 0; destination < 3; ++destination) {
        customers.show();
        ok = printQuery(QStringLiteral("customers"), destination,
                        [&] { customers.findChild<TrnControl *>()->Command1_Click(TrnControl::btnprint); }, dir, out)
             && ok;
        customers.hide();
        lines.show();
        ok = printQuery(QStringLiteral("order-lines"), destination,
                        [&] { lines.findChild<GridPanel *>()->Command1_Click(GridPanel::btnprint); }, dir, out)
             && ok;
        lines.hide();
    }
    lines.show();
    ok = panelReport(lines, dir, out) && ok;
    lines.close();
    customers.close();
    return ok;
}
