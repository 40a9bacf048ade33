#include "toolbartestsupport.h"

#include "ui_hostform.h"

#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/propertybag.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/usercontrol1.h>
#include <PanelKestrin/variant.h>

#include <QSignalSpy>

using namespace PanelKestrin;
using namespace ToolbarTest;

namespace {

ToolbarBase *make(const QString &kind)
{
    if (kind == QLatin1String("TrnControl"))
        return new TrnControl;
    if (kind == QLatin1String("UserControl1"))
        return new UserControl1;
    return new GridPanel;
}

// The state helper is the toolbars' own; a host never calls it.
class OpenTrn : public TrnControl
{
public:
    using ToolbarBase::SetButtonStates;
};

QImage picture(const QAbstractButton *b)
{
    return b->icon().pixmap(16, 16).toImage();
}

void addKinds()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"TrnControl", "UserControl1", "GridPanel"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

} // namespace

class tst_toolbarbase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void buttons_data();
    void buttons();
    void cmdenable_data();
    void cmdenable();
    void stateHelperMatchesByValue();
    void accessKeys_data();
    void accessKeys();
    void persistence_data();
    void persistence();
    void formFileStoresCmdenable();
    void reportParametersAreShared();
    void reportNotifications_data();
    void reportNotifications();
};

void tst_toolbarbase::buttons_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("captions");
    QTest::addColumn<QString>("tips");
    QTest::newRow("TrnControl") << "TrnControl" << "&Add|&Edit|&Delete|&Save|F&ind|P&rint|&Quit|&Undo"
                                << "Add a Record|Update  a Record|Delete  a Record|Save  a Record|Find  a Record..."
                                   "|Print to Screen/Printer...|Quit and Unload the Form|Cancel the Current Mode";
    QTest::newRow("UserControl1")
        << "UserControl1" << "&First|&Prev|&Next|&Last|&Add|&Edit|&Del|&Save|F&ind|P&rint|&Quit|&Undo"
        << "Move to First Record|Move to Previous Record|Move to Next Record|Move to Last Record|Add  a Record"
           "|Update  a Record|Delete a Record|Save a Record|Find a Record...|Print to Screen/Printer..."
           "|Quit and Unload the Form|Cancel the Current Mode...";
    QTest::newRow("GridPanel") << "GridPanel" << "&First|&Prev|&Next|&Last|&Edit|&Save|&Print|&Quit|&Undo"
                               << "First Page of Grid|Previous Page of Grid|Next Page of Grid|Last Page of Grid"
                                  "|Update Grid Values|Save Grid Values|Print To Screen/Printer..."
                                  "|Quit and Unload the Form|Cancel the Current Mode";
}

void tst_toolbarbase::buttons()
{
    QFETCH(QString, kind);
    QFETCH(QString, captions);
    QFETCH(QString, tips);
    std::unique_ptr<ToolbarBase> bar(make(kind));
    QStringList shownCaptions, shownTips;
    QList<QImage> pictures;
    for (int i = 0; QAbstractButton *b = button(bar.get(), i); ++i) {
        shownCaptions << b->text();
        shownTips << b->toolTip();
        QVERIFY(!b->icon().isNull());
        QVERIFY2(!pictures.contains(picture(b)), "one distinct picture per button");
        pictures << picture(b);
        if (kind == QLatin1String("UserControl1"))
            QCOMPARE(b->font().family(), b->text() == QLatin1String("&Undo") ? "Verdana" : "Arial");
    }
    QCOMPARE(shownCaptions.join(QLatin1Char('|')), captions);
    QCOMPARE(shownTips.join(QLatin1Char('|')), tips);
    // The same command shows the same picture on every toolbar.
    UserControl1 navigation;
    const int undo = shownCaptions.indexOf(QStringLiteral("&Undo"));
    QCOMPARE(pictures.at(undo), picture(button(&navigation, UserControl1::btnundo)));
}

void tst_toolbarbase::cmdenable_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("empty enables all") << "TrnControl" << "" << "11111111";
    QTest::newRow("0 disables button 0") << "TrnControl" << "0" << "01111111";
    QTest::newRow("10 disables button 1") << "TrnControl" << "10" << "10111111";
    QTest::newRow("any other character enables") << "UserControl1" << "x0 1" << "101111111111";
    QTest::newRow("longer than the row") << "GridPanel" << "11111111100000" << "111111111";
    QTest::newRow("all off") << "GridPanel" << "000000000" << "000000000";
}

void tst_toolbarbase::cmdenable()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    QFETCH(QString, enabled);
    std::unique_ptr<ToolbarBase> bar(make(kind));
    Customers data;
    data.open(2);
    bar->setsrset(&data.rs);
    bar->setcmdenable(QStringLiteral("000000000000")); // so that enabling is seen too
    QSignalSpy changed(bar.get(), &ToolbarBase::PropertyChanged);
    CallByName(bar.get(), QStringLiteral("cmdenable"), VbLet, {text});
    QCOMPARE(pattern(bar.get()), enabled);
    QCOMPARE(bar->cmdenable(), text);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().first().toString(), QStringLiteral("cmdenable"));
    // Remembered, not derived: a mode change leaves the string as it was.
    const qint16 toEditMode = kind == QLatin1String("TrnControl") ? qint16(TrnControl::btnadd) : qint16(4); // Add, or Edit
    bar->Command1_Click(toEditMode);
    QVERIFY(pattern(bar.get()) != enabled);
    QCOMPARE(bar->cmdenable(), text);
}

void tst_toolbarbase::stateHelperMatchesByValue()
{
    OpenTrn bar;
    bar.SetButtonStates(true, {3, 3.0, QStringLiteral("7")});
    QCOMPARE(pattern(&bar), QStringLiteral("00010001"));
    bar.SetButtonStates(true, {42});
    QCOMPARE(pattern(&bar), QStringLiteral("00000000"));
    bar.SetButtonStates(false, {42, QStringLiteral("none")});
    QCOMPARE(pattern(&bar), QStringLiteral("11111111"));
}

void tst_toolbarbase::accessKeys_data()
{
    addKinds();
}

void tst_toolbarbase::accessKeys()
{
    QFETCH(QString, kind);
    Host host;
    ToolbarBase *bar = make(kind);
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(3);
    bar->setsrset(&data.rs);
    bar->setProperty("gFormIsDirty", true); // the navigation toolbar asks only then
    Boxes boxes(host.journal);
    const QString allEnabled = pattern(bar);
    const int undo = allEnabled.size() - 1;
    const int save = kind == QLatin1String("TrnControl") ? 3 : kind == QLatin1String("UserControl1") ? 7 : 5;

    QTest::keyClick(&host, Qt::Key_Escape);
    QCOMPARE(host.journal, QStringList{"box:Confirm Undo"});
    bar->setcmdenable(QString(allEnabled).replace(undo, 1, QLatin1Char('0')));
    QTest::keyClick(&host, Qt::Key_Escape);
    QCOMPARE(host.journal.size(), 1);

    QVERIFY(!button(bar, save)->hasFocus());
    QTest::keyClick(&host, Qt::Key_W, Qt::AltModifier);
    QVERIFY(button(bar, save)->hasFocus());
    QCOMPARE(host.journal.size(), 1); // focused, not pressed

    // A property bag without "Cancel" makes Undo an ordinary button: Esc stays with the form.
    bar->setcmdenable(allEnabled);
    bar->ReadProperties(PropertyBag());
    QTest::keyClick(&host, Qt::Key_Escape);
    QCOMPARE(host.journal.size(), 1);
}

void tst_toolbarbase::persistence_data()
{
    addKinds();
}

void tst_toolbarbase::persistence()
{
    QFETCH(QString, kind);
    std::unique_ptr<ToolbarBase> bar(make(kind));
    const QString allEnabled = pattern(bar.get());

    // A new instance saves its empty string and the Undo button's designed Cancel.
    bar->InitProperties();
    PropertyBag fresh;
    bar->WriteProperties(fresh);
    QCOMPARE(fresh.toVariantMap(), (QVariantMap{{"cmdenable", QString()}, {"Cancel", true}}));

    // An empty bag reads as the defaults: stored, never applied to the buttons.
    bar->ReadProperties(PropertyBag());
    QCOMPARE(bar->cmdenable(), QStringLiteral("00000000000"));
    QCOMPARE(pattern(bar.get()), allEnabled);
    PropertyBag defaults;
    bar->WriteProperties(defaults);
    QVERIFY(defaults.toVariantMap().isEmpty());

    const QVariantMap saved{{"cmdenable", "0101"}, {"Cancel", true}, {"Default", true}};
    bar->ReadProperties(PropertyBag::fromVariantMap(saved));
    QCOMPARE(pattern(bar.get()), allEnabled);
    PropertyBag again;
    bar->WriteProperties(again);
    QCOMPARE(again.toVariantMap(), saved);
}

void tst_toolbarbase::formFileStoresCmdenable()
{
    QWidget form;
    Ui::HostForm ui;
    ui.setupUi(&form);
    QCOMPARE(ui.TrnControl1->cmdenable(), QStringLiteral("10000000"));
    QCOMPARE(pattern(ui.TrnControl1), QStringLiteral("11111111"));
    // Assigned at run time, the same string applies.
    ui.TrnControl1->setcmdenable(ui.TrnControl1->cmdenable());
    QCOMPARE(pattern(ui.TrnControl1), QStringLiteral("10000000"));
}

void tst_toolbarbase::reportParametersAreShared()
{
    QWidget orders, customers;
    auto *trn = new TrnControl(&orders);
    auto *grid = new GridPanel(&orders);
    trn->setrpttitle(QStringLiteral("Orders by customer"));
    trn->setsortfields(QStringLiteral("cust_code,order_date"));
    VariantMatrix criteria(0, 2, 0, 1);
    criteria(0, 0) = QStringLiteral("OPEN");
    trn->setSelectionCriteria(criteria);
    trn->setReportToPrint(QStringLiteral("O"));
    QCOMPARE(grid->rpttitle(), QStringLiteral("Orders by customer"));

    // Placing a toolbar on another form restarts the arrays and the report kind for all.
    auto *nav = new UserControl1(&customers);
    VariantMatrix restarted(0, 1, 0, 1);
    restarted(0, 0) = QString();
    QVERIFY(trn->SelectionCriteria() == restarted);
    QVERIFY(grid->RptParameter() == restarted);
    QCOMPARE(reportParameters().ReportToPrint, QStringLiteral("D"));
    QCOMPARE(nav->rpttitle(), QStringLiteral("Orders by customer")); // the rest stays
    QCOMPARE(nav->sortfields(), QStringLiteral("cust_code,order_date"));

    // Arrays go in and out as copies; the last writer wins.
    VariantMatrix copy = nav->SelectionCriteria();
    copy(1, 1) = QStringLiteral("changed");
    QVERIFY(isEmpty(trn->SelectionCriteria()(1, 1)));
    nav->setrpttitle(QStringLiteral("Customers"));
    QCOMPARE(trn->rpttitle(), QStringLiteral("Customers"));
}

void tst_toolbarbase::reportNotifications_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("notified");
    QTest::newRow("srset") << "srset" << QVariant::fromValue<Recordset *>(nullptr) << "srset";
    QTest::newRow("sortcaptions") << "sortcaptions" << QVariant("Code,Name") << "sortcaptions";
    QTest::newRow("sortfields") << "sortfields" << QVariant("code,name") << "sortfields";
    QTest::newRow("selquery") << "selquery" << QVariant("SELECT * FROM customers") << "selquery";
    QTest::newRow("rptheading") << "rptheading" << QVariant("Heading") << "";
    QTest::newRow("rpttitle") << "rpttitle" << QVariant("Title") << "rpttitle";
    QTest::newRow("SelectionCriteria") << "SelectionCriteria" << QVariant::fromValue(VariantMatrix(0, 3, 0, 1))
                                       << "SelectionCriteria";
    QTest::newRow("SelectionField") << "SelectionField" << QVariant("city") << "";
    QTest::newRow("RptParameter") << "RptParameter" << QVariant::fromValue(VariantMatrix(1, 2, 0, 0))
                                  << "SelectionCriteria";
    QTest::newRow("ReportToPrint") << "ReportToPrint" << QVariant("O") << "";
}

void tst_toolbarbase::reportNotifications()
{
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(QString, notified);
    UserControl1 bar;
    QSignalSpy changed(&bar, &ToolbarBase::PropertyChanged);
    CallByName(&bar, property, property == QLatin1String("srset") ? VbSet : VbLet, {value});
    QCOMPARE(changed.size(), notified.isEmpty() ? 0 : 1);
    if (!notified.isEmpty())
        QCOMPARE(changed.first().first().toString(), notified);
    if (property == QLatin1String("ReportToPrint")) {
        QCOMPARE(reportParameters().ReportToPrint, value.toString());
        GridPanel grid; // no ReportToPrint here
        QVERIFY_THROWS_EXCEPTION(RuntimeError, CallByName(&grid, property, VbLet, {value}));
    } else {
        QCOMPARE(CallByName(&bar, property, VbGet), value);
    }
}

QTEST_MAIN(tst_toolbarbase)
#include "tst_toolbarbase.moc"
