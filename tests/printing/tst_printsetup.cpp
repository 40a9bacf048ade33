// The print options panel on a host form beside another control: the focus moved in and out by
// real clicks and Tab, and the output settings it writes on leaving, into the library's report
// engine and into a plain object that records what it is given; its fixed sizes and the height
// it lends its container for the file option.
#include "../toolbars/toolbartestsupport.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/printsetup.h>
#include <PanelKestrin/reportengine.h>
#include <PanelKestrin/twips.h>

#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

using namespace ToolbarTest;

// A host's own report object: it has the members the panel sets, and keeps each assignment.
class RecordingReport : public QObject
{
    Q_OBJECT
public:
    QStringList log;
    Q_INVOKABLE void setConnect(const QString &value) { log << QStringLiteral("Connect=") + value; }
    Q_INVOKABLE void setDestination(int value) { log << QStringLiteral("Destination=%1").arg(value); }
    Q_INVOKABLE void setPrinterStartPage(int value) { log << QStringLiteral("PrinterStartPage=%1").arg(value); }
    Q_INVOKABLE void setPrinterStopPage(int value) { log << QStringLiteral("PrinterStopPage=%1").arg(value); }
    Q_INVOKABLE void setPrintFileType(int value) { log << QStringLiteral("PrintFileType=%1").arg(value); }
};

namespace {

const QString kConnect = QStringLiteral("Provider=SQLite;Data Source=orders.sqlite");

// A form with a text box above the panel, shown and active.
struct PanelForm
{
    QWidget form;
    QLineEdit *other = new QLineEdit(&form);
    PrintSetup *panel = new PrintSetup(&form);

    PanelForm()
    {
        other->setObjectName(QStringLiteral("txtOther"));
        other->setGeometry(10, 10, 200, 24);
        panel->move(10, 50);
        form.resize(400, 220);
        form.show();
        form.activateWindow();
    }
    template <typename W>
    W *child(const QString &name) const
    {
        W *w = panel->findChild<W *>(name);
        if (!w)
            qFatal("the panel has no %s", qPrintable(name));
        return w;
    }
    void clickInto(QWidget *w) { QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(4, w->height() / 2)); }
    void type(const QString &box, const QString &text)
    {
        auto *edit = child<QLineEdit>(box);
        clickInto(edit);
        QTest::keyClicks(edit, text);
    }
    // The user's choices inside the panel: the output, the pages and the file type.
    void choose(int destination, const QString &from, const QString &to, int fileType = 0)
    {
        clickInto(other);
        type(QStringLiteral("txtfrompage"), from);
        type(QStringLiteral("txttopage"), to);
        clickInto(child<QRadioButton>(QStringLiteral("optoutput_%1").arg(destination)));
        if (destination == 2) {
            // Chosen from the keyboard: a click would open the list in a window of its own.
            auto *type = child<QComboBox>(QStringLiteral("cmbfiletype"));
            type->setFocus(Qt::TabFocusReason);
            QTest::keyClick(type, fileType ? Qt::Key_Down : Qt::Key_Up);
        }
    }
};

int twipsHigh(QWidget *w) { return CallByName(w, QStringLiteral("Height"), VbGet).toInt(); }

} // namespace

class tst_PrintSetup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        failOnUnscriptedModals();
        ConnectionSettings::instance().setConnectString(kConnect);
    }
    void leavingWritesTheChosenOutput_data();
    void leavingWritesTheChosenOutput();
    void theLibrarysEngineTakesTheSettings();
    void movingInsideThePanelWritesNothing();
    void leavingFailuresAreReported_data();
    void leavingFailuresAreReported();
    void keepsItsSizeAndLendsHeightForTheFileOption();
};

void tst_PrintSetup::leavingWritesTheChosenOutput_data()
{
    QTest::addColumn<int>("destination");
    QTest::addColumn<int>("fileType");
    QTest::addColumn<QStringList>("written");
    const QString connect = QStringLiteral("Connect=") + kConnect;
    QTest::newRow("screen") << 0 << 0 << QStringList{connect, "Destination=0"};
    QTest::newRow("printer pages") << 1 << 0
                                   << QStringList{connect, "Destination=1", "PrinterStartPage=2", "PrinterStopPage=5"};
    QTest::newRow("text file") << 2 << 0 << QStringList{connect, "Destination=2", "PrintFileType=2"};
    QTest::newRow("doc file") << 2 << 1 << QStringList{connect, "Destination=2", "PrintFileType=17"};
}

// Leaving by a click on the other control, then coming back and leaving by Shift+Tab.
void tst_PrintSetup::leavingWritesTheChosenOutput()
{
    QFETCH(int, destination);
    QFETCH(int, fileType);
    QFETCH(QStringList, written);
    PanelForm host;
    QVERIFY(QTest::qWaitForWindowActive(&host.form));
    RecordingReport report;
    host.panel->setCrystalReportObj(&report);
    Reported reported;
    host.choose(destination, QStringLiteral("2"), QStringLiteral("5"), fileType);
    QCOMPARE(report.log, QStringList());
    host.clickInto(host.other);
    QCOMPARE(report.log, written);

    report.log.clear();
    host.clickInto(host.child<QRadioButton>(QStringLiteral("optoutput_%1").arg(destination))); // the panel's first stop
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), host.other);
    QCOMPARE(report.log, written);
    QCOMPARE(reported.numbers, QList<int>());
}

void tst_PrintSetup::theLibrarysEngineTakesTheSettings()
{
    PanelForm host;
    QVERIFY(QTest::qWaitForWindowActive(&host.form));
    ReportEngine engine;
    engine.setCopiesToPrinter(3);
    // A late-bound host sets the object by member name.
    CallByName(host.panel, QStringLiteral("CrystalReportObj"), VbSet, {QVariant::fromValue<QObject *>(&engine)});
    host.choose(1, QStringLiteral("3"), QStringLiteral("4"));
    host.clickInto(host.other);
    QCOMPARE(engine.Connect(), kConnect);
    QCOMPARE(engine.Destination(), 1);
    QCOMPARE(engine.PrinterStartPage(), 3);
    QCOMPARE(engine.PrinterStopPage(), 4);
    QCOMPARE(engine.CopiesToPrinter(), 3); // the copies are the host's to set
    host.choose(2, QStringLiteral("1"), QStringLiteral("1"), 1);
    host.clickInto(host.other);
    QCOMPARE(engine.Destination(), 2);
    QCOMPARE(engine.PrintFileType(), 17);
}

// Tab from box to box inside the panel is not leaving it; the Tab that goes out is.
void tst_PrintSetup::movingInsideThePanelWritesNothing()
{
    PanelForm host;
    QVERIFY(QTest::qWaitForWindowActive(&host.form));
    RecordingReport report;
    host.panel->setCrystalReportObj(&report);
    host.choose(0, QStringLiteral("1"), QStringLiteral("1"));
    int tabs = 0;
    while (host.panel->isAncestorOf(QApplication::focusWidget()) && tabs < 20) {
        QCOMPARE(report.log, QStringList());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        ++tabs;
    }
    QVERIFY(tabs > 1);
    QCOMPARE(QApplication::focusWidget(), host.other);
    QCOMPARE(report.log.size(), 2);
}

void tst_PrintSetup::leavingFailuresAreReported_data()
{
    QTest::addColumn<bool>("withObject");
    QTest::addColumn<QString>("fromPage");
    QTest::addColumn<int>("error");
    QTest::newRow("no report object yet") << false << "1" << int(ErrObjectNotSet);
    QTest::newRow("an empty page box") << true << "" << 13;
}

void tst_PrintSetup::leavingFailuresAreReported()
{
    QFETCH(bool, withObject);
    QFETCH(QString, fromPage);
    PanelForm host;
    QVERIFY(QTest::qWaitForWindowActive(&host.form));
    RecordingReport report;
    if (withObject)
        host.panel->setCrystalReportObj(&report);
    Reported reported;
    host.choose(1, fromPage, QStringLiteral("2"));
    host.clickInto(host.other);
    QTEST(reported.numbers.value(0), "error");
    QCOMPARE(reported.numbers.size(), 1);
    QCOMPARE(QApplication::focusWidget(), host.other);
}

void tst_PrintSetup::keepsItsSizeAndLendsHeightForTheFileOption()
{
    PanelForm host;
    QVERIFY(QTest::qWaitForWindowActive(&host.form));
    auto near = [](int twips, int expected) { return qAbs(twips - expected) <= 15; };
    QVERIFY(near(CallByName(host.panel, QStringLiteral("Width"), VbGet).toInt(), 4935));
    QVERIFY(near(twipsHigh(host.panel), 1700));
    host.panel->resize(50, 50); // the container cannot give it another size
    QVERIFY(near(twipsHigh(host.panel), 1700));

    const int formHeight = twipsHigh(&host.form);
    host.clickInto(host.child<QRadioButton>(QStringLiteral("optoutput_2")));
    QVERIFY(near(twipsHigh(host.panel), 2300));
    QVERIFY(near(twipsHigh(&host.form), formHeight + 600));
    host.clickInto(host.child<QRadioButton>(QStringLiteral("optoutput_1")));
    QVERIFY(near(twipsHigh(host.panel), 1700));
    QVERIFY(near(twipsHigh(&host.form), formHeight));
    QVERIFY(host.child<QWidget>(QStringLiteral("cmdprintsetup"))->isVisible());
    QVERIFY(!host.child<QWidget>(QStringLiteral("cmbfiletype"))->isVisible());
}

QTEST_MAIN(tst_PrintSetup)
#include "tst_printsetup.moc"
