#include "toolbartestsupport.h"

#include "ui_hostform.h"

#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/propertybag.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/usercontrol1.h>
#include <PanelKestrin/variant.h>

#include <QAccessible>
#include <QSignalSpy>

using namespace ToolbarTest;
using T = TrnControl;
using U = UserControl1;

namespace {

ToolbarBase *make(const QString &kind)
{
    if (kind == QLatin1String("TrnControl"))
        return new TrnControl;
    if (kind == QLatin1String("UserControl1"))
        return new UserControl1;
    return new GridPanel;
}

void addKinds()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("save");
    QTest::newRow("TrnControl") << "TrnControl" << 3;
    QTest::newRow("UserControl1") << "UserControl1" << 7;
    QTest::newRow("GridPanel") << "GridPanel" << 5;
}

QImage picture(const QAbstractButton *b) { return b->icon().pixmap(16, 16).toImage(); }
QList<QVariantList> notices(const QSignalSpy &spy) { return spy; }

} // namespace

class tst_toolbarbase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void picturesAndFonts();
    void cmdenable_data();
    void cmdenable();
    void accessKeys_data() { addKinds(); }
    void accessKeys();
    void escapeGoesToTheToolbarThatCanUndo();
    void buttonsDescribeThemselvesToScreenReaders_data() { addKinds(); }
    void buttonsDescribeThemselvesToScreenReaders();
    void persistence_data() { addKinds(); }
    void persistence();
    void formFileStoresCmdenable();
    void reportParametersAreShared();
    void reportNotifications_data();
    void reportNotifications();
};

void tst_toolbarbase::picturesAndFonts()
{
    TrnControl trn;
    UserControl1 nav;
    // One distinct picture per button; a command looks the same on every toolbar.
    QList<QImage> pictures;
    for (int i = 0; QAbstractButton *b = button(&nav, i); ++i) {
        QVERIFY(!pictures.contains(picture(b)));
        pictures << picture(b);
        QCOMPARE(b->font().family(), i == U::btnundo ? "Verdana" : "Arial");
    }
    for (int i = 0; i <= T::btnundo; ++i)
        QCOMPARE(picture(button(&trn, i)), pictures.at(i + U::btnadd));
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
    bar->setcmdenable(QStringLiteral("000000000000"));
    QSignalSpy changed(bar.get(), &ToolbarBase::PropertyChanged);
    CallByName(bar.get(), QStringLiteral("cmdenable"), VbLet, {text});
    QCOMPARE(pattern(bar.get()), enabled);
    QCOMPARE(notices(changed), QList<QVariantList>{{QStringLiteral("cmdenable")}});
    // Remembered, not derived: a mode change leaves the string as it was.
    bar->Command1_Click(kind == QLatin1String("TrnControl") ? qint16(T::btnadd) : qint16(4)); // Add, or Edit
    QVERIFY(pattern(bar.get()) != enabled);
    QCOMPARE(bar->cmdenable(), text);
}

void tst_toolbarbase::accessKeys()
{
    QFETCH(QString, kind);
    QFETCH(int, save);
    Host host;
    ToolbarBase *bar = make(kind);
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(3);
    bar->setsrset(&data.rs);
    bar->setProperty("gFormIsDirty", true); // the navigation toolbar asks only then
    Boxes boxes(host.journal);
    const QString all = pattern(bar);

    QTest::keyClick(&host, Qt::Key_Escape); // presses Undo
    bar->setcmdenable(QString(all).replace(all.size() - 1, 1, QLatin1Char('0')));
    QTest::keyClick(&host, Qt::Key_Escape); // Undo disabled: nothing
    QTest::keyClick(&host, Qt::Key_W, Qt::AltModifier);
    QVERIFY(button(bar, save)->hasFocus()); // focused, not pressed
    // Read from a bag without "Cancel", Undo is no longer the form's cancel button.
    bar->setcmdenable(all);
    bar->ReadProperties(PropertyBag());
    QTest::keyClick(&host, Qt::Key_Escape);
    QCOMPARE(host.journal, QStringList{"box:Confirm Undo"});
}

// A screen reader gives each button's tool tip as its description.
void tst_toolbarbase::buttonsDescribeThemselvesToScreenReaders()
{
    QFETCH(QString, kind);
    std::unique_ptr<ToolbarBase> bar(make(kind));
    for (int i = 0; QAbstractButton *b = button(bar.get(), i); ++i) {
        QVERIFY(!b->toolTip().isEmpty());
        QCOMPARE(b->accessibleDescription(), b->toolTip());
        QCOMPARE(QAccessible::queryAccessibleInterface(b)->text(QAccessible::Description), b->toolTip());
    }
}

void tst_toolbarbase::escapeGoesToTheToolbarThatCanUndo()
{
    Host host;
    auto *both = new QWidget;
    auto *lines = new GridPanel(both);
    auto *header = new TrnControl(both);
    (new QVBoxLayout(both))->addWidget(header);
    both->layout()->addWidget(lines);
    QVERIFY(showOn(host, both));
    Customers data;
    data.open(2);
    header->setsrset(&data.rs);
    bool cancelled = false;
    connect(lines, &GridPanel::CancelClick, [&] { cancelled = true; });
    Boxes boxes(host.journal, {vbYes, vbYes});
    click(header, T::btnedit); // the grid toolbar stays in browse mode, its Undo off
    lines->setcmdenable(QStringLiteral("111110110"));
    QTest::keyClick(&host, Qt::Key_Escape);
    QCOMPARE(pattern(header), QStringLiteral("11101110"));
    QVERIFY(!cancelled);
    QTest::keyClick(&host, Qt::Key_Escape); // neither can undo now
    QCOMPARE(host.journal, (QStringList{"box:Confirm Undo", "refresh1"}));
}

void tst_toolbarbase::persistence()
{
    QFETCH(QString, kind);
    std::unique_ptr<ToolbarBase> bar(make(kind));
    const QString all = pattern(bar.get());
    // A new instance saves its empty string and the Undo button's designed Cancel.
    bar->InitProperties();
    PropertyBag fresh;
    bar->WriteProperties(fresh);
    QCOMPARE(fresh.toVariantMap(), (QVariantMap{{"cmdenable", QString()}, {"Cancel", true}}));
    // An empty bag reads as the defaults: stored, never applied to the buttons.
    bar->ReadProperties(PropertyBag());
    QCOMPARE(bar->cmdenable(), QStringLiteral("00000000000"));
    PropertyBag defaults;
    bar->WriteProperties(defaults);
    QVERIFY(defaults.toVariantMap().isEmpty());
    const QVariantMap saved{{"cmdenable", "0101"}, {"Cancel", true}, {"Default", true}};
    bar->ReadProperties(PropertyBag::fromVariantMap(saved));
    PropertyBag again;
    bar->WriteProperties(again);
    QCOMPARE(again.toVariantMap(), saved);
    QCOMPARE(pattern(bar.get()), all);
}

void tst_toolbarbase::formFileStoresCmdenable()
{
    QWidget form;
    Ui::HostForm ui;
    ui.setupUi(&form);
    QCOMPARE(ui.TrnControl1->cmdenable(), QStringLiteral("10000000"));
    QCOMPARE(pattern(ui.TrnControl1), QStringLiteral("11111111"));
    ui.TrnControl1->setcmdenable(ui.TrnControl1->cmdenable()); // assigned at run time, it applies
    QCOMPARE(pattern(ui.TrnControl1), QStringLiteral("10000000"));
}

void tst_toolbarbase::reportParametersAreShared()
{
    QWidget orders, customers;
    auto *trn = new TrnControl(&orders);
    auto *grid = new GridPanel(&orders);
    trn->setrpttitle(QStringLiteral("Orders"));
    VariantMatrix criteria(0, 2, 0, 1);
    criteria(0, 0) = QStringLiteral("OPEN");
    trn->setSelectionCriteria(criteria);
    trn->setReportToPrint(QStringLiteral("O"));
    QCOMPARE(grid->rpttitle(), QStringLiteral("Orders"));
    QCOMPARE(grid->SelectionCriteria(), criteria);

    // A toolbar placed on another form restarts the arrays and the report kind for all.
    auto *nav = new UserControl1(&customers);
    VariantMatrix restarted(0, 1, 0, 1);
    restarted(0, 0) = QString();
    QCOMPARE(trn->SelectionCriteria(), restarted);
    QCOMPARE(grid->RptParameter(), restarted);
    QCOMPARE(reportParameters().ReportToPrint, QStringLiteral("D"));
    QCOMPARE(nav->rpttitle(), QStringLiteral("Orders"));

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
    for (const char *name : {"sortcaptions", "sortfields", "selquery", "rpttitle"})
        QTest::newRow(name) << name << QVariant("text") << name;
    QTest::newRow("rptheading") << "rptheading" << QVariant("Heading") << "";
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
    QCOMPARE(notices(changed), notified.isEmpty() ? QList<QVariantList>{} : QList<QVariantList>{{notified}});
    if (property == QLatin1String("ReportToPrint")) { // write-only, and not on the grid toolbar
        QCOMPARE(reportParameters().ReportToPrint, value.toString());
        GridPanel grid;
        QVERIFY_THROWS_EXCEPTION(RuntimeError, CallByName(&grid, property, VbLet, {value}));
    } else {
        QCOMPARE(CallByName(&bar, property, VbGet), value);
    }
}

QTEST_MAIN(tst_toolbarbase)
#include "tst_toolbarbase.moc"
