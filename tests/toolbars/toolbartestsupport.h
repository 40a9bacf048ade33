// What the toolbar tests share: a host form answering the toolbars' calls by name, scripted
// message boxes and modal forms, collected error reports, and a small customers table.
#pragma once

#include <PanelKestrin/connection.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>

#include <QAbstractButton>
#include <QCloseEvent>
#include <QDialog>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QtTest>

namespace ToolbarTest {

using namespace PanelKestrin;

// Offers "Validatefields" and "refresh1"; the toolbar's calls, the events the tests connect and
// the boxes shown all go into one journal, in order.
class Host : public QWidget
{
    Q_OBJECT
public:
    QStringList journal;
    bool valid = true;
    bool refuseClose = false;

    Q_INVOKABLE bool Validatefields() { return journal << QStringLiteral("Validatefields"), valid; }
    Q_INVOKABLE void refresh1() { journal << QStringLiteral("refresh1"); }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        journal << QStringLiteral("closed");
        event->setAccepted(!refuseClose);
    }
};

// Puts the toolbar on the host and shows it active, so that clicks and access keys reach it.
inline bool showOn(Host &host, QWidget *toolbar)
{
    (new QVBoxLayout(&host))->addWidget(toolbar);
    host.show();
    host.activateWindow();
    return QTest::qWaitForWindowActive(&host);
}

inline QAbstractButton *button(const QWidget *toolbar, int index)
{
    return toolbar->findChild<QAbstractButton *>(QStringLiteral("Command1_%1").arg(index));
}

inline void click(const QWidget *toolbar, int index) { QTest::mouseClick(button(toolbar, index), Qt::LeftButton); }

// "1" per enabled button, "0" per disabled one, in index order.
inline QString pattern(const QWidget *toolbar)
{
    QString text;
    for (int i = 0; QAbstractButton *b = button(toolbar, i); ++i)
        text += QLatin1Char(b->isEnabled() ? '1' : '0');
    return text;
}

// Run once per test program: a box or modal form no test scripted fails the test at once.
inline void failOnUnscriptedModals()
{
    setMessageBoxHandler([](const QString &prompt, int, const QString &title) {
        QTest::qFail(qPrintable(QStringLiteral("unscripted box: %1: %2").arg(title, prompt)), __FILE__, __LINE__);
        return int(vbNo);
    });
    setModalRunner([](QDialog *form) {
        QTest::qFail(qPrintable(QStringLiteral("unscripted form ") + form->objectName()), __FILE__, __LINE__);
        return int(QDialog::Rejected);
    });
}

// Answers boxes from a script (No when it runs out), journaled as "box:<title>".
struct Boxes
{
    QStringList &journal;
    QList<int> answers;
    QStringList prompts;
    QList<int> styles;
    MessageBoxHandler previous = setMessageBoxHandler([this](const QString &prompt, int style, const QString &title) {
        journal << QStringLiteral("box:") + title;
        prompts << prompt;
        styles << style;
        return answers.isEmpty() ? int(vbNo) : answers.takeFirst();
    });
    Boxes(QStringList &j, QList<int> script = {}) : journal(j), answers(std::move(script)) {}
    ~Boxes() { setMessageBoxHandler(previous); }
};

// Collects what the event-boundary reporter would show.
struct Reported
{
    QList<int> numbers;
    ErrorReporter previous = setErrorReporter([this](const RuntimeError &e) { numbers << e.Number(); });
    ~Reported() { setErrorReporter(previous); }
};

// Counts the modal forms shown and lets inspect look at each instead of a nested event loop.
struct ModalForms
{
    int shown = 0;
    std::function<void(QDialog *)> inspect;
    ModalRunner previous = setModalRunner([this](QDialog *form) {
        ++shown;
        if (inspect)
            inspect(form);
        return int(QDialog::Rejected);
    });
    explicit ModalForms(std::function<void(QDialog *)> f = {}) : inspect(std::move(f)) {}
    ~ModalForms() { setModalRunner(previous); }
};

// Customers C1, C2 ... in a fresh SQLite file and a recordset over them in code order.
struct Customers
{
    QTemporaryDir dir;
    Connection cn;
    Recordset rs;

    void open(int rows)
    {
        const QString path = dir.filePath(QStringLiteral("customers.sqlite"));
        QFile(path).open(QIODevice::WriteOnly);
        cn.Open(QStringLiteral("Provider=SQLite;Data Source=") + path);
        cn.Execute(QStringLiteral("CREATE TABLE customers (code VARCHAR(8), name VARCHAR(30), joined DATE)"));
        for (int i = 1; i <= rows; ++i)
            cn.Execute(QStringLiteral("INSERT INTO customers VALUES (?, ?, '2024-01-01')"),
                       {QStringLiteral("C%1").arg(i), QStringLiteral("Name %1").arg(i)});
        rs.Open(QStringLiteral("SELECT code, name, joined FROM customers ORDER BY code"), &cn);
    }
    // "first", "last", "eof" (past the last) or "<n>" for record n.
    void standOn(const QString &where)
    {
        if (rs.RecordCount() == 0)
            return;
        where == QLatin1String("first") || where.toInt() > 0 ? rs.MoveFirst() : rs.MoveLast();
        if (where == QLatin1String("eof"))
            rs.MoveNext();
        for (int n = where.toInt(); n > 1; --n)
            rs.MoveNext();
    }
    // A host's delete: the current customer goes and the recordset is read again.
    void deleteCurrent()
    {
        cn.Execute(QStringLiteral("DELETE FROM customers WHERE code = ?"), {rs.Fields().Item(0).Value()});
        rs.Requery();
    }
};

} // namespace ToolbarTest
