// What the toolbar tests share: a host form that answers the toolbars' calls by name, scripted
// message boxes, collected error reports and a small customers table to move through.
#pragma once

#include <PanelKestrin/connection.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QAbstractButton>
#include <QCloseEvent>
#include <QDialog>
#include <QFile>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest>

#include <functional>

namespace ToolbarTest {

// A host form offering "Validatefields" and "refresh1". Everything the toolbar does to it,
// the events it raises and the boxes it shows go into one journal, in order.
class Host : public QWidget
{
    Q_OBJECT
public:
    QStringList journal;
    bool valid = true;
    bool refuseClose = false;

    Q_INVOKABLE bool Validatefields()
    {
        journal << QStringLiteral("Validatefields");
        return valid;
    }
    Q_INVOKABLE void refresh1() { journal << QStringLiteral("refresh1"); }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        journal << QStringLiteral("closed");
        event->setAccepted(!refuseClose);
    }
};

// Places toolbar on host and shows the form active, so that clicks and access keys reach it.
inline bool showOn(Host &host, QWidget *toolbar)
{
    auto *layout = new QVBoxLayout(&host);
    layout->addWidget(toolbar);
    host.show();
    host.activateWindow();
    return QTest::qWaitForWindowActive(&host);
}

inline QAbstractButton *button(const QWidget *toolbar, int index)
{
    return toolbar->findChild<QAbstractButton *>(QStringLiteral("Command1_%1").arg(index));
}

// "1" for every enabled button, "0" for every disabled one, in index order.
inline QString pattern(const QWidget *toolbar)
{
    QString text;
    for (int i = 0; QAbstractButton *b = button(toolbar, i); ++i)
        text += b->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
    return text;
}

inline void click(const QWidget *toolbar, int index)
{
    QTest::mouseClick(button(toolbar, index), Qt::LeftButton);
}

// Installed once per test program: a message box or a modal form that no test scripted fails
// the running test instead of waiting for a user.
inline void failOnUnscriptedModals()
{
    PanelKestrin::setMessageBoxHandler([](const QString &prompt, int, const QString &title) {
        QTest::qFail(qPrintable(QStringLiteral("unscripted message box: ") + title + QStringLiteral(": ") + prompt),
                     __FILE__, __LINE__);
        return int(PanelKestrin::vbNo);
    });
    PanelKestrin::setModalRunner([](QDialog *form) {
        QTest::qFail(qPrintable(QStringLiteral("unscripted modal form ") + form->objectName()), __FILE__, __LINE__);
        return int(QDialog::Rejected);
    });
}

// Answers message boxes from a script (No when it runs out) and notes each in the journal as
// "box:<title>"; the prompts and styles are kept too.
struct Boxes
{
    QStringList &journal;
    QList<int> answers;
    QStringList prompts;
    QList<int> styles;

    PanelKestrin::MessageBoxHandler previous;

    explicit Boxes(QStringList &j, QList<int> script = {}) : journal(j), answers(std::move(script))
    {
        previous = PanelKestrin::setMessageBoxHandler([this](const QString &prompt, int style, const QString &title) {
            journal << QStringLiteral("box:") + title;
            prompts << prompt;
            styles << style;
            return answers.isEmpty() ? int(PanelKestrin::vbNo) : answers.takeFirst();
        });
    }
    ~Boxes() { PanelKestrin::setMessageBoxHandler(previous); }
};

// Collects what the event-boundary reporter would show.
struct Reported
{
    QList<int> numbers;
    PanelKestrin::ErrorReporter previous;

    Reported()
    {
        previous = PanelKestrin::setErrorReporter([this](const PanelKestrin::RuntimeError &e) { numbers << e.Number(); });
    }
    ~Reported() { PanelKestrin::setErrorReporter(previous); }
};

// Runs inspect on every modal form shown, instead of a nested event loop.
struct ModalForms
{
    int shown = 0;
    PanelKestrin::ModalRunner previous;

    explicit ModalForms(std::function<void(QDialog *)> inspect = {})
    {
        previous = PanelKestrin::setModalRunner([this, inspect](QDialog *form) {
            ++shown;
            if (inspect)
                inspect(form);
            return int(QDialog::Rejected);
        });
    }
    ~ModalForms() { PanelKestrin::setModalRunner(previous); }
};

// A customers table of `rows` records (codes C1, C2 ...) in a fresh SQLite file, and a
// recordset over it in code order, standing on the first record.
struct Customers
{
    QTemporaryDir dir;
    PanelKestrin::Connection cn;
    PanelKestrin::Recordset rs;

    void open(int rows)
    {
        const QString path = dir.filePath(QStringLiteral("customers.sqlite"));
        QFile(path).open(QIODevice::WriteOnly);
        cn.Open(QStringLiteral("Provider=SQLite;Data Source=") + path);
        cn.Execute(QStringLiteral("CREATE TABLE customers (code VARCHAR(8), name VARCHAR(30), joined DATE)"));
        for (int i = 1; i <= rows; ++i)
            cn.Execute(QStringLiteral("INSERT INTO customers VALUES (?, ?, ?)"),
                       {QStringLiteral("C%1").arg(i), QStringLiteral("Name %1").arg(i), QStringLiteral("2024-01-0%1").arg(i % 9 + 1)});
        rs.Open(QStringLiteral("SELECT code, name, joined FROM customers ORDER BY code"), &cn);
    }
    // Positions: "first", "last", "eof" (past the last record), or "<n>" for record n.
    void standOn(const QString &where)
    {
        if (rs.RecordCount() == 0)
            return;
        if (where == QLatin1String("last") || where == QLatin1String("eof"))
            rs.MoveLast();
        else
            rs.MoveFirst();
        if (where == QLatin1String("eof"))
            rs.MoveNext();
        for (int n = where.toInt(); n > 1; --n)
            rs.MoveNext();
    }
    // What a host's delete handler does: remove the current record and read the table again.
    void deleteCurrent()
    {
        cn.Execute(QStringLiteral("DELETE FROM customers WHERE code = ?"), {rs.Fields().Item(0).Value()});
        rs.Requery();
    }
};

} // namespace ToolbarTest
