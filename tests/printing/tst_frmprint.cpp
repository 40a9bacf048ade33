#include "../toolbars/toolbartestsupport.h"

#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/twips.h>
#include <PanelKestrin/usercontrol1.h>

#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace PanelKestrin;
using namespace ToolbarTest;

namespace {

QStringList items(const QComboBox *box)
{
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    return texts;
}

template <typename W>
W *control(QDialog *form, const char *name)
{
    W *w = form->findChild<W *>(QLatin1String(name));
    if (!w)
        qFatal("the print query form has no %s", name);
    return w;
}

// What the print query form shows once loaded.
struct Seen
{
    QStringList groupOn, criteria, fileTypes;
    bool criteriaEnabled = false;
    bool dateEditors = false;
    int frameHeight = 0, formHeight = 0;
};

Seen look(QDialog *form)
{
    Seen seen;
    seen.groupOn = items(control<QComboBox>(form, "cmbfield"));
    seen.criteria = items(control<QComboBox>(form, "CmbCriteria"));
    seen.fileTypes = items(control<QComboBox>(form, "cmbfiletype"));
    seen.criteriaEnabled = control<QComboBox>(form, "CmbCriteria")->isEnabled();
    const bool pickers = !control<QDateEdit>(form, "DTPicker1")->isHidden() && !control<QDateEdit>(form, "DTPicker2")->isHidden();
    const bool texts = !control<QLineEdit>(form, "txtfrom")->isHidden() && !control<QLineEdit>(form, "txtto")->isHidden();
    if (pickers == texts)
        qFatal("exactly one pair of range editors must be shown");
    seen.dateEditors = pickers;
    seen.frameHeight = PixelsToTwipsY(control<QFrame>(form, "Frame2")->height(), form);
    seen.formHeight = CallByName(form, QStringLiteral("Height"), VbGet).toInt();
    return seen;
}

// What the user does to leave the form: CANCEL unloads it.
void cancel(QDialog *form)
{
    QTest::mouseClick(control<QPushButton>(form, "cmdcancel"), Qt::LeftButton);
}

} // namespace

class tst_frmprint : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void loadsFromTheReportParameters_data();
    void loadsFromTheReportParameters();
    void groupOnChoiceSwitchesTheRangeEditors();
    void cancelUnloadsAndTheNextPrintLoadsAgain();
    void loadFailuresReachTheCaller_data();
    void loadFailuresReachTheCaller();
};

void tst_frmprint::loadsFromTheReportParameters_data()
{
    QTest::addColumn<QString>("sortcaptions");
    QTest::addColumn<QString>("sortfields");
    QTest::addColumn<QStringList>("criteria"); // value, caption, value, caption ...
    QTest::addColumn<QStringList>("groupOn");
    QTest::addColumn<bool>("dateEditors");
    QTest::newRow("text field first") << "Code,Name,Joined" << "code,name,joined" << QStringList{}
                                      << QStringList{"Code", "Name", "Joined"} << false;
    QTest::newRow("date field first") << "Joined,Code" << "joined,code" << QStringList{} << QStringList{"Joined", "Code"}
                                      << true;
    QTest::newRow("with criteria") << "Name" << "name" << QStringList{"C1", "First customer", "C2", "Second customer"}
                                   << QStringList{"Name"} << false;
    QTest::newRow("no sort choices") << "" << "" << QStringList{} << QStringList{} << false;
}

void tst_frmprint::loadsFromTheReportParameters()
{
    QFETCH(QString, sortcaptions);
    QFETCH(QString, sortfields);
    QFETCH(QStringList, criteria);
    QFETCH(QStringList, groupOn);
    QFETCH(bool, dateEditors);

    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(3);
    // The host fills the block in its printclick handler, after every toolbar has started.
    connect(bar, &TrnControl::printclick, [&] {
        bar->setsrset(&data.rs);
        bar->setsortcaptions(sortcaptions);
        bar->setsortfields(sortfields);
        if (!criteria.isEmpty()) {
            VariantMatrix rows(0, int(criteria.size() / 2) - 1, 0, 1);
            for (int i = 0; i < criteria.size(); ++i)
                rows(i / 2, i % 2) = criteria.at(i);
            bar->setSelectionCriteria(rows);
        }
    });
    Seen seen;
    ModalForms forms([&](QDialog *form) {
        seen = look(form);
        cancel(form);
    });
    click(bar, TrnControl::btnprint);
    QCOMPARE(forms.shown, 1);
    QCOMPARE(seen.groupOn, groupOn);
    QCOMPARE(seen.dateEditors, dateEditors);
    QStringList captions;
    for (int i = 1; i < criteria.size(); i += 2)
        captions << criteria.at(i);
    QCOMPARE(seen.criteria, captions);
    QCOMPARE(seen.criteriaEnabled, !criteria.isEmpty());
    QCOMPARE(seen.fileTypes, (QStringList{"Text File", " Doc File"}));
    QVERIFY(qAbs(seen.frameHeight - 1110) <= 15);
    QVERIFY(qAbs(seen.formHeight - 4100) <= 15);
}

void tst_frmprint::groupOnChoiceSwitchesTheRangeEditors()
{
    Host host;
    auto *bar = new GridPanel;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(2);
    bar->setsrset(&data.rs);
    bar->setsortcaptions(QStringLiteral("Code,Joined"));
    bar->setsortfields(QStringLiteral("code,joined"));
    QList<bool> dates;
    ModalForms forms([&](QDialog *form) {
        form->show();
        auto *groupOn = control<QComboBox>(form, "cmbfield");
        dates << look(form).dateEditors;
        QTest::keyClick(groupOn, Qt::Key_Down);
        dates << look(form).dateEditors;
        QCOMPARE(control<QDateEdit>(form, "DTPicker1")->displayFormat(), QStringLiteral("dd/MM/yyyy"));
        QTest::keyClick(groupOn, Qt::Key_Up);
        dates << look(form).dateEditors;
        cancel(form);
        QVERIFY(!form->isVisible());
    });
    click(bar, GridPanel::btnprint);
    QCOMPARE(dates, (QList<bool>{false, true, false}));
}

void tst_frmprint::cancelUnloadsAndTheNextPrintLoadsAgain()
{
    Host orders, customers;
    auto *trn = new TrnControl;
    auto *nav = new UserControl1;
    QVERIFY(showOn(orders, trn));
    QVERIFY(showOn(customers, nav));
    Customers data;
    data.open(2);
    nav->setsrset(&data.rs);
    QList<QDialog *> opened;
    QList<QStringList> groupOn;
    bool unload = true;
    ModalForms forms([&](QDialog *form) {
        opened << form;
        groupOn << look(form).groupOn;
        if (unload)
            cancel(form);
    });
    trn->setsortcaptions(QStringLiteral("Code"));
    trn->setsortfields(QStringLiteral("code"));
    click(trn, TrnControl::btnprint);
    nav->setsortcaptions(QStringLiteral("Name,Code"));
    nav->setsortfields(QStringLiteral("name,code"));
    unload = false; // this time the form is left loaded
    click(nav, UserControl1::btnprint);
    trn->setsortcaptions(QStringLiteral("Joined"));
    click(trn, TrnControl::btnprint);
    QCOMPARE(groupOn, (QList<QStringList>{{"Code"}, {"Name", "Code"}, {"Name", "Code"}}));
    QCOMPARE(opened.size(), 3);
    QVERIFY(opened.at(0) == opened.at(1) && opened.at(1) == opened.at(2)); // one form for every toolbar
    cancel(opened.first());
}

void tst_frmprint::loadFailuresReachTheCaller_data()
{
    QTest::addColumn<bool>("withRecordset");
    QTest::addColumn<QString>("sortcaptions");
    QTest::addColumn<QString>("sortfields");
    QTest::addColumn<int>("error");
    QTest::newRow("srset not set") << false << "Code" << "code" << int(ErrObjectNotSet);
    QTest::newRow("field not in srset") << true << "Region" << "region" << 3265;
    QTest::newRow("fewer fields than captions") << true << "Code,Name" << "" << int(ErrSubscriptOutOfRange);
}

void tst_frmprint::loadFailuresReachTheCaller()
{
    QFETCH(bool, withRecordset);
    QFETCH(QString, sortcaptions);
    QFETCH(QString, sortfields);
    QFETCH(int, error);
    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(1);
    bar->setsrset(withRecordset ? &data.rs : nullptr);
    bar->setsortcaptions(sortcaptions);
    bar->setsortfields(sortfields);
    ModalForms forms;
    int thrown = 0;
    try {
        bar->Command1_Click(TrnControl::btnprint);
    } catch (const RuntimeError &e) {
        thrown = e.Number();
    }
    QCOMPARE(thrown, error);
    Reported reported;
    click(bar, TrnControl::btnprint);
    QCOMPARE(reported.numbers, QList<int>{error});
    QCOMPARE(forms.shown, 0);
}

QTEST_MAIN(tst_frmprint)
#include "tst_frmprint.moc"
