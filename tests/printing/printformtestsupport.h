// What the print query form's run tests share: an items table on SQLite or the PostgreSQL test
// server with a host recordset over it, a host form with a transaction toolbar whose Print opens
// the form, a user who fills the form by clicks and keys, and collectors for the boxes, errors,
// save dialogs and report previews a run opens.
#pragma once

#include "../data/datatestsupport.h"
#include "../toolbars/toolbartestsupport.h"
#include "printformcontrols.h"
#include "printing/reportfiles_p.h"
#include "printing/reportpreview_p.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/trncontrol.h>

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>

namespace PrintFormTest {

using namespace PanelKestrin;
using ToolbarTest::Host;

constexpr int ItemRows = 150;
inline const QString ItemsTable = QStringLiteral("frmprint_items");
inline const QString GuardTable = QStringLiteral("frmprint_guard");

// Items I001 ... I150 named the other way round ("Name 150" ... "Name 001"), so that an order by
// name shows, quantity n, added 2024-01-01 + n days; and a guard
// table that a statement slipped into a filter would try to change or drop.
struct Items
{
    QTemporaryDir dir;
    Connection cn;
    Recordset rs;

    // Why the table could not be made, or empty; once made, the program's connection settings
    // point at its database.
    QString open(const QString &engine)
    {
        const QString why = DataTest::openEngine(cn, engine, dir);
        if (!why.isEmpty())
            return why;
        ConnectionSettings::instance().setConnectString(cn.ConnectionString());
        DataTest::recreateTable(cn, ItemsTable,
                                QStringLiteral("code VARCHAR(8) PRIMARY KEY, name VARCHAR(30), qty NUMERIC(10,2), added DATE"));
        DataTest::recreateTable(cn, GuardTable, QStringLiteral("n INTEGER"));
        cn.Execute(QStringLiteral("INSERT INTO %1 VALUES (42)").arg(GuardTable));
        QStringList rows;
        for (int n = 1; n <= ItemRows; ++n)
            rows << QStringLiteral("('I%1', 'Name %2', %3, '%4')")
                        .arg(n, 3, 10, QLatin1Char('0'))
                        .arg(ItemRows + 1 - n, 3, 10, QLatin1Char('0'))
                        .arg(n)
                        .arg(QDate(2024, 1, 1).addDays(n).toString(Qt::ISODate));
        cn.Execute(QStringLiteral("INSERT INTO %1 VALUES %2").arg(ItemsTable, rows.join(u',')));
        rs.Open(QStringLiteral("SELECT code, name, qty, added FROM %1 ORDER BY code").arg(ItemsTable), &cn);
        return QString();
    }

    // Every row of both tables as text: it changes if anything wrote to them.
    QString snapshot()
    {
        QString text;
        try {
            for (const QString &sql : {QStringLiteral("SELECT code, name, qty, added FROM %1 ORDER BY code").arg(ItemsTable),
                                       QStringLiteral("SELECT n FROM %1").arg(GuardTable)}) {
                Recordset all;
                all.Open(sql, &cn);
                for (; !all.adoEOF(); all.MoveNext())
                    for (int f = 0; f < all.Fields().Count(); ++f)
                        text += all.Fields().Item(f).Value().toString() + QLatin1Char('|');
            }
        } catch (const RuntimeError &e) {
            text += e.Description();
        }
        return text;
    }
};

// The report parameters a host sets in printclick.
struct Report
{
    QString kind = QStringLiteral("D");
    QString sortcaptions = QStringLiteral("Code,Name,Quantity,Added");
    QString sortfields = QStringLiteral("code,name,qty,added");
    QString selquery;
    QString rpttitle;
    QStringList criteria; // value, caption, ...
    QString criteriaField;
};

// What the user does on the form before OK.
struct FormInput
{
    int groupOn = 0; // Down presses on "Group On"
    QString from, to; // yyyy-mm-dd for a date field
    int destination = 0;
    QString fromPage, toPage;
    int fileType = 0;
    QString fileName;
};

inline void typeInto(QWidget *form, const char *name, const QString &text)
{
    auto *box = control<QLineEdit>(form, name);
    box->setFocus();
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
}

// Fills the form the way a user does: keys in "Group On" and the boxes, a click on the output.
inline void fill(QWidget *form, const FormInput &input)
{
    auto *groupOn = control<QComboBox>(form, "cmbfield");
    groupOn->setFocus();
    for (int i = 0; i < input.groupOn; ++i)
        QTest::keyClick(groupOn, Qt::Key_Down);
    if (control<QLineEdit>(form, "txtfrom")->isVisible()) {
        typeInto(form, "txtfrom", input.from);
        typeInto(form, "txtto", input.to);
    } else { // a date field: the range as picked from the calendars (from and to as yyyy-mm-dd)
        control<QDateEdit>(form, "DTPicker1")->setDate(QDate::fromString(input.from, Qt::ISODate));
        control<QDateEdit>(form, "DTPicker2")->setDate(QDate::fromString(input.to, Qt::ISODate));
    }
    auto *option = control<QRadioButton>(form, qPrintable(QStringLiteral("optoutput_%1").arg(input.destination)));
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
    typeInto(form, "txtfrompage", input.fromPage);
    typeInto(form, "txttopage", input.toPage);
    if (input.destination == 2) {
        auto *type = control<QComboBox>(form, "cmbfiletype");
        type->setFocus();
        QTest::keyClick(type, input.fileType ? Qt::Key_Down : Qt::Key_Up);
        typeInto(form, "txtfilename", input.fileName);
    }
}

inline void pressOK(QWidget *form)
{
    QTest::mouseClick(control<QAbstractButton>(form, "cmdOK"), Qt::LeftButton);
}

// OK, then Cancel if the form stayed open; whether it did.
inline bool submit(QWidget *form)
{
    pressOK(form);
    const bool stillOpen = form->isVisible();
    if (stillOpen)
        cancel(form);
    return stillOpen;
}

// The boxes, reported errors, save dialogs and previews of a run, and the form's own script:
// the print query form's modal showing runs `user` on it; a report preview is laid out to its
// end and its lines kept.
struct Run
{
    QStringList boxes;   // "<style>|<title>|<prompt>"
    QStringList errors;  // "<number>: <description>"
    QStringList dialogs; // "<title>|<filter>"
    QString saveAs;      // what the save dialog answers
    QStringList previewLines;
    int previews = 0;
    bool previewMaximized = false;
    std::function<void(QDialog *)> user;

    MessageBoxHandler previousBox = setMessageBoxHandler([this](const QString &prompt, int style, const QString &title) {
        boxes << QStringLiteral("%1|%2|%3").arg(style).arg(title, prompt);
        return int(vbOK);
    });
    ErrorReporter previousReporter = setErrorReporter(
        [this](const RuntimeError &e) { errors << QStringLiteral("%1: %2").arg(e.Number()).arg(e.Description()); });
    SaveFileNameHandler previousSave =
        setSaveFileNameHandler([this](QWidget *, const QString &title, const QString &filter, const QString &) {
            dialogs << title + QLatin1Char('|') + filter;
            return saveAs;
        });
    ModalRunner previousRunner = setModalRunner([this](QDialog *form) {
        if (auto *preview = qobject_cast<ReportPreview *>(form)) {
            ++previews;
            preview->show();
            QTest::qWaitFor([preview] { return !preview->isLayingOut(); }, 60000);
            previewMaximized = preview->windowState() & Qt::WindowMaximized;
            for (int page = 0; page < preview->document().pageCount(); ++page)
                previewLines += reportPageTextLines(preview->document(), page);
            preview->close();
            return 0;
        }
        form->show();
        if (user)
            user(form);
        return 0;
    });

    ~Run()
    {
        setModalRunner(previousRunner);
        setSaveFileNameHandler(previousSave);
        setErrorReporter(previousReporter);
        setMessageBoxHandler(previousBox);
    }
};

// The item codes of a report's detail lines ("I005 ... Name 146"), in order.
inline QStringList itemCodes(const QStringList &lines)
{
    static const QRegularExpression detail(QStringLiteral("\\b(I\\d{3})\\s+Name \\d{3}"));
    QStringList codes;
    for (auto it = detail.globalMatch(lines.join(u'\n')); it.hasNext();)
        codes << it.next().captured(1);
    return codes;
}

// A host form with a transaction toolbar whose printclick sets the report parameters; Print
// then opens the print query form.
struct PrintingHost
{
    Host host;
    TrnControl *bar = new TrnControl;

    PrintingHost(Items &items, const Report &report)
    {
        ToolbarTest::showOn(host, bar);
        QObject::connect(bar, &TrnControl::printclick, bar, [this, &items, report] {
            bar->setsrset(&items.rs);
            bar->setsortcaptions(report.sortcaptions);
            bar->setsortfields(report.sortfields);
            bar->setselquery(report.selquery);
            bar->setrpttitle(report.rpttitle);
            bar->setReportToPrint(report.kind);
            if (!report.criteria.isEmpty()) {
                VariantMatrix rows(0, int(report.criteria.size() / 2) - 1, 0, 1);
                for (int i = 0; i < report.criteria.size(); ++i)
                    rows(i / 2, i % 2) = report.criteria.at(i);
                bar->setSelectionCriteria(rows);
                QString field = report.criteriaField;
                bar->setSelectionField(field);
            }
        });
    }
    void print() { ToolbarTest::click(bar, TrnControl::btnprint); }
};

} // namespace PrintFormTest
