#include "../toolbars/toolbartestsupport.h"
#include "printformcontrols.h"

#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/twips.h>
#include <PanelKestrin/usercontrol1.h>

#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QLineEdit>

using namespace ToolbarTest;

namespace {

QStringList items(QDialog *form, const char *name)
{
    QStringList texts;
    for (auto *box = control<QComboBox>(form, name); texts.size() < box->count();)
        texts << box->itemText(int(texts.size()));
    return texts;
}

// The range editors shown: "dates" (the two pickers) or "texts" (the two boxes).
QString rangeEditors(QDialog *form)
{
    const bool dates = control<QDateEdit>(form, "DTPicker1")->isVisibleTo(form)
                       && control<QDateEdit>(form, "DTPicker2")->isVisibleTo(form);
    const bool texts = control<QLineEdit>(form, "txtfrom")->isVisibleTo(form)
                       && control<QLineEdit>(form, "txtto")->isVisibleTo(form);
    return dates == texts ? QStringLiteral("both or none") : dates ? QStringLiteral("dates") : QStringLiteral("texts");
}

} // namespace

class tst_frmprint : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void loadsFromTheReportParameters_data();
    void loadsFromTheReportParameters();
    void cancelUnloadsAndTheNextPrintLoadsAgain();
    void loadFailuresReachTheCaller_data();
    void loadFailuresReachTheCaller();
};

void tst_frmprint::loadsFromTheReportParameters_data()
{
    QTest::addColumn<QString>("sortcaptions");
    QTest::addColumn<QString>("sortfields");
    QTest::addColumn<QStringList>("criteria"); // value, caption, value, caption ...
    QTest::addColumn<QString>("editors");
    QTest::newRow("text field first") << "Code,Name,Joined" << "code,name,joined" << QStringList{} << "texts";
    QTest::newRow("date field first") << "Joined,Code" << "joined,code" << QStringList{} << "dates";
    QTest::newRow("with criteria") << "Name" << "name" << QStringList{"C1", "First", "C2", "Second"} << "texts";
    QTest::newRow("no sort choices") << "" << "" << QStringList{} << "texts";
}

void tst_frmprint::loadsFromTheReportParameters()
{
    QFETCH(QString, sortcaptions);
    QFETCH(QString, sortfields);
    QFETCH(QStringList, criteria);
    QFETCH(QString, editors);

    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(3);
    // The host fills the block in printclick, after every toolbar has started.
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
    QStringList captions;
    for (int i = 1; i < criteria.size(); i += 2)
        captions << criteria.at(i);
    ModalForms forms([&](QDialog *form) {
        QCOMPARE(items(form, "cmbfield"), sortcaptions.isEmpty() ? QStringList{} : sortcaptions.split(','));
        QCOMPARE(rangeEditors(form), editors);
        QCOMPARE(items(form, "CmbCriteria"), captions);
        QCOMPARE(control<QComboBox>(form, "CmbCriteria")->isEnabled(), !criteria.isEmpty());
        QCOMPARE(items(form, "cmbfiletype"), (QStringList{"Text File", " Doc File"}));
        QVERIFY(qAbs(PixelsToTwipsY(control<QFrame>(form, "Frame2")->height(), form) - 1110) <= 15);
        QVERIFY(qAbs(CallByName(form, QStringLiteral("Height"), VbGet).toInt() - 4100) <= 15);
        if (editors == QLatin1String("dates")) { // choosing "Code" switches to the text boxes and back
            form->show();
            QTest::keyClick(control<QComboBox>(form, "cmbfield"), Qt::Key_Down);
            QCOMPARE(rangeEditors(form), QStringLiteral("texts"));
            QTest::keyClick(control<QComboBox>(form, "cmbfield"), Qt::Key_Up);
            QCOMPARE(rangeEditors(form), QStringLiteral("dates"));
            QCOMPARE(control<QDateEdit>(form, "DTPicker2")->displayFormat(), QStringLiteral("dd/MM/yyyy"));
        }
        cancel(form);
        QVERIFY(!form->isVisible());
    });
    click(bar, TrnControl::btnprint);
    QCOMPARE(forms.shown, 1);
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
        groupOn << items(form, "cmbfield");
        if (unload)
            cancel(form);
    });
    trn->setsortcaptions(QStringLiteral("Code"));
    trn->setsortfields(QStringLiteral("code"));
    click(trn, TrnControl::btnprint);
    nav->setsortcaptions(QStringLiteral("Name,Code"));
    nav->setsortfields(QStringLiteral("name,code"));
    unload = false; // this time the form is left loaded, so the next Print shows it unchanged
    click(nav, UserControl1::btnprint);
    trn->setsortcaptions(QStringLiteral("Joined"));
    click(trn, TrnControl::btnprint);
    QCOMPARE(groupOn, (QList<QStringList>{{"Code"}, {"Name", "Code"}, {"Name", "Code"}}));
    QVERIFY(opened.size() == 3 && opened.at(0) == opened.at(1) && opened.at(1) == opened.at(2)); // one form
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
    auto *bar = new GridPanel;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(1);
    bar->setsrset(withRecordset ? &data.rs : nullptr);
    bar->setsortcaptions(sortcaptions);
    bar->setsortfields(sortfields);
    ModalForms forms;
    int thrown = 0;
    try {
        bar->Command1_Click(GridPanel::btnprint);
    } catch (const RuntimeError &e) {
        thrown = e.Number();
    }
    QCOMPARE(thrown, error);
    Reported reported;
    click(bar, GridPanel::btnprint);
    QCOMPARE(reported.numbers, QList<int>{error});
    QCOMPARE(forms.shown, 0);
}

QTEST_MAIN(tst_frmprint)
#include "tst_frmprint.moc"
