#include "gridtestsupport.h"
#include "regionaltestsupport.h"

#include <QtTest>

using namespace PanelKestrin;
using namespace GridTest;

Q_DECLARE_METATYPE(RegionalTest::Settings)

// The grid under the user's regional settings: loaded dates show in the short-date pattern,
// the find box matches what is shown, numbers keep the "." the editor reads, and the value an
// edited date cell gives the host stays in the fixed month-first form.
class tst_gridcontrol_regional : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { settle(); }
    void loadedValues_data();
    void loadedValues();

private:
    RegionalTest::Scope regional;
};

void tst_gridcontrol_regional::loadedValues_data()
{
    QTest::addColumn<RegionalTest::Settings>("settings");
    QTest::addColumn<QString>("shown"); // row 4's due date, 5 January 2026

    QTest::newRow("US") << RegionalTest::us() << "1/5/2026";
    QTest::newRow("UK") << RegionalTest::uk() << "05/01/2026";
    QTest::newRow("German") << RegionalTest::german() << "05.01.2026";
}

void tst_gridcontrol_regional::loadedValues()
{
    QFETCH(RegionalTest::Settings, settings);
    QFETCH(QString, shown);
    regional.set(settings);
    LinesGrid lines(6, QStringLiteral("SELECT * FROM lines ORDER BY lineno"));
    auto &g = lines.grid;
    g->bShowMenu = true;
    FlexGrid *view = GridInternals::grid(*g);
    constexpr int price = 4, due = 5;

    QCOMPARE(view->TextMatrix(4, due), shown);
    QCOMPARE(view->TextMatrix(4, price), QStringLiteral("4.5"));
    QCOMPARE(g->ColTotal(price), 1.5 + 2.5 + 3.5 + 4.5 + 5.5 + 6.5);

    // The find box matches the text the user sees, not the stored month-first form.
    view->setRow(1);
    view->setCol(1);
    g->pop_Click(2); // the menu's Find
    auto *box = g->findChild<QLineEdit *>(QStringLiteral("TxtFind"));
    QVERIFY(box->isVisible());
    QTest::keyClicks(box, QStringLiteral("01/05"));
    QVERIFY(view->Row() != 4);
    box->clear();
    QTest::keyClicks(box, shown.left(5));
    QCOMPARE(QPoint(view->Row(), view->Col()), QPoint(4, due));
    g->pop_Click(0); // hides the box

    // Leaving the date cell as shown hands the host the same date, month first.
    QLineEdit *editor = GridInternals::editor(*g);
    view->setRow(4);
    view->setCol(due);
    QCOMPARE(editor->text(), shown);
    QTest::keyClick(editor, Qt::Key_End);
    QTest::keyClick(editor, Qt::Key_Down);
    QCOMPARE(CStr(g->DataArray()(due - 1, 3)), QStringLiteral("01/05/2026"));
    QCOMPARE(view->TextMatrix(4, due), shown);
}

QTEST_MAIN(tst_gridcontrol_regional)
#include "tst_gridcontrol_regional.moc"
