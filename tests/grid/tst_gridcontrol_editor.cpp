// The in-place editor as a user drives it: characters filtered by the column's description,
// the move keys with their column skipping, help, and the columns locked on loaded rows.
#include "gridtestsupport.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/strings.h>

#include <QAccessible>
#include <QInputMethodEvent>
#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;

class tst_gridcontrol_editor : public QObject
{
    Q_OBJECT

private slots:
    void init() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { settle(); }

    void typedCharacters_data();
    void typedCharacters();
    void nonAsciiKeysReachTheCell_data();
    void nonAsciiKeysReachTheCell();
    void numbersTypeIntoFloatingPointColumns_data();
    void numbersTypeIntoFloatingPointColumns();
    void editorIsNamedForScreenReaders();
    void moveKeys_data();
    void moveKeys();
    void helpKey();
    void notEditableColumnsLockLoadedRows();

private:
    // Six lines; columns item VARCHAR(5), qty INTEGER, price NUMERIC(6,2), due DATE, a, b, c.
    std::unique_ptr<gridcontrol> grid(Database &db, const QString &disabled = QString())
    {
        db.cn.Execute(QStringLiteral("CREATE TABLE e (item VARCHAR(5), qty INTEGER, price NUMERIC(6,2), due DATE, "
                                     "a VARCHAR(3), b VARCHAR(3), c VARCHAR(3))"));
        for (int i = 1; i <= 6; ++i)
            db.cn.Execute(QStringLiteral("INSERT INTO e VALUES (?, ?, 1.5, '2026-02-03', 'A', 'B', 'C')"),
                          {QStringLiteral("IT%1").arg(i), i});
        rs = db.open(QStringLiteral("SELECT * FROM e ORDER BY qty"));
        auto g = makeGrid(*rs);
        g->bShowMenu = true;
        g->setDisableCol(disabled);
        g->MakeGridStructure();
        g->TopRow();
        return g;
    }
    std::unique_ptr<Recordset> rs;
};

void tst_gridcontrol_editor::typedCharacters_data()
{
    QTest::addColumn<int>("col");
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");

    QTest::newRow("character upper-cased") << 1 << "" << "ab1" << "AB1";
    QTest::newRow("character full width refuses") << 1 << "ABCDE" << "xy" << "ABCDE";
    QTest::newRow("parenthesis and ampersand always pass") << 1 << "ABCDE" << "(&" << "ABCDE(&";
    QTest::newRow("integer digits only") << 2 << "" << "1a2-3" << "123";
    // The point counts towards the length (6): the text is full before the second decimal.
    QTest::newRow("decimal counts") << 3 << "" << "1234.567" << "1234.5";
    QTest::newRow("decimal places") << 3 << "" << "1.234" << "1.23";
    QTest::newRow("date passes anything") << 4 << "" << "a1/" << "a1/";
}

void tst_gridcontrol_editor::typedCharacters()
{
    QFETCH(int, col);
    QFETCH(QString, start);
    Database db;
    auto g = grid(db);
    GridInternals::grid(*g)->setCol(col);
    QLineEdit *editor = GridInternals::editor(*g);
    editor->setText(start);
    QFETCH(QString, typed);
    QTest::keyClicks(editor, typed);
    QTEST(editor->text(), "result");
}

// Characters outside the key table, from a key press carrying them as text or from an input
// method's commit: they go through the column's character filter like any other character.
void tst_gridcontrol_editor::nonAsciiKeysReachTheCell_data()
{
    QTest::addColumn<int>("col");
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("key");        // Qt key of the key press; -1: an input-method commit
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");

    QTest::newRow("u umlaut") << 1 << "" << int(Qt::Key_Udiaeresis) << "ü" << "ü";
    QTest::newRow("e acute") << 1 << "" << int(Qt::Key_Eacute) << "é" << "é";
    QTest::newRow("n tilde") << 1 << "" << int(Qt::Key_Ntilde) << "ñ" << "ñ";
    QTest::newRow("sharp s") << 1 << "" << int(Qt::Key_ssharp) << "ß" << "ß";
    QTest::newRow("Cyrillic") << 1 << "" << 0x416 << "ж" << "ж";
    QTest::newRow("euro") << 1 << "" << 0x20ac << "€" << "€";
    QTest::newRow("pound") << 1 << "AB" << int(Qt::Key_sterling) << "£" << "AB£";
    QTest::newRow("two characters in one key press") << 1 << "" << int(Qt::Key_unknown) << "äb" << "äB";
    QTest::newRow("full character column") << 1 << "ABCDE" << int(Qt::Key_Udiaeresis) << "ü" << "ABCDE";
    QTest::newRow("integer column refuses") << 2 << "1" << int(Qt::Key_Eacute) << "é" << "1";
    QTest::newRow("date column passes") << 4 << "" << int(Qt::Key_Eacute) << "é" << "é";
    QTest::newRow("input method, character column") << 1 << "" << -1 << "ab€" << "AB€";
    QTest::newRow("input method, integer column") << 2 << "" << -1 << "1ä2" << "12";
    QTest::newRow("input method, full column") << 1 << "ABCD" << -1 << "üx" << "ABCDü";
}

void tst_gridcontrol_editor::nonAsciiKeysReachTheCell()
{
    QFETCH(int, col);
    QFETCH(QString, start);
    QFETCH(int, key);
    QFETCH(QString, typed);
    Database db;
    auto g = grid(db);
    GridInternals::grid(*g)->setCol(col);
    QLineEdit *editor = GridInternals::editor(*g);
    editor->setText(start);
    if (key < 0) {
        QInputMethodEvent commit;
        commit.setCommitString(typed);
        QApplication::sendEvent(editor, &commit);
    } else {
        QTest::sendKeyEvent(QTest::Click, editor, Qt::Key(key), typed, Qt::NoModifier);
    }
    QTEST(editor->text(), "result");

    // Leaving the cell writes what was typed to the grid and the store.
    QTest::keyClick(editor, Qt::Key_Down);
    QFETCH(QString, result);
    QCOMPARE(GridInternals::grid(*g)->TextMatrix(1, col), result);
    if (col == 1)
        QCOMPARE(Trim(CStr(g->DataArray()(0, 0))), result);
}

// Floating-point columns have no fixed scale: any number can be typed into them. A NUMERIC(p,s)
// column keeps its limits.
void tst_gridcontrol_editor::numbersTypeIntoFloatingPointColumns_data()
{
    QTest::addColumn<QString>("declaration");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");

    QTest::newRow("REAL") << "REAL" << "12.5" << "12.5";
    QTest::newRow("DOUBLE") << "DOUBLE" << "1234567.891" << "1234567.891";
    QTest::newRow("DOUBLE PRECISION") << "DOUBLE PRECISION" << "3.14159265" << "3.14159265";
    QTest::newRow("FLOAT, letters refused") << "FLOAT" << "a7b.c5" << "7.5";
    QTest::newRow("NUMERIC(10,2) keeps its limits") << "NUMERIC(10,2)" << "123456789.5" << "12345678.5";
}

void tst_gridcontrol_editor::numbersTypeIntoFloatingPointColumns()
{
    QFETCH(QString, declaration);
    Database db;
    db.cn.Execute(QStringLiteral("CREATE TABLE f (amount %1)").arg(declaration));
    db.cn.Execute(QStringLiteral("INSERT INTO f VALUES (NULL)"));
    auto rsf = db.open(QStringLiteral("SELECT amount FROM f"));
    auto g = makeGrid(*rsf);
    QLineEdit *editor = GridInternals::editor(*g);
    editor->setText(QString());
    QFETCH(QString, typed);
    QTest::keyClicks(editor, typed);
    QTEST(editor->text(), "result");
    QFETCH(QString, result);
    g->SaveLastCol();
    QCOMPARE(g->DataArray()(0, 0).toDouble(), result.toDouble());
}

// The editor tells a screen reader which cell it edits, and follows the moves; the find box is
// named too.
void tst_gridcontrol_editor::editorIsNamedForScreenReaders()
{
    Database db;
    db.fillLines(3);
    auto rsl = db.open(QStringLiteral("SELECT item, qty, price FROM lines"));
    auto g = makeGrid(*rsl, 3600, QStringLiteral("Item,Qty,Price"));
    FlexGrid *view = GridInternals::grid(*g);
    QLineEdit *editor = GridInternals::editor(*g);
    const auto name = [](QWidget *w) { return QAccessible::queryAccessibleInterface(w)->text(QAccessible::Name); };

    view->setRow(3);
    view->setCol(2);
    QCOMPARE(name(editor), QStringLiteral("Qty, row 3"));
    QTest::keyClick(editor, Qt::Key_Return);
    QCOMPARE(name(editor), QStringLiteral("Price, row 3"));
    QTest::keyClick(editor, Qt::Key_Up);
    QCOMPARE(name(editor), QStringLiteral("Price, row 2"));
    g->bShowMenu = true;
    g->GridRowAddnew();
    QCOMPARE(name(editor), QStringLiteral("Item, row 4"));
    QCOMPARE(name(g->findChild<QLineEdit *>(QStringLiteral("TxtFind"))), QStringLiteral("Find"));
}

// Keys typed into the editor; the cell reached, and the grid's rows afterwards.
void tst_gridcontrol_editor::moveKeys_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QString>("disabled");
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<QPoint>("cell");
    QTest::addColumn<int>("rows");

    const auto keys = [](std::initializer_list<std::pair<Qt::Key, Qt::KeyboardModifiers>> list) {
        QTestEventList events;
        for (const auto &[key, modifiers] : list)
            events.addKeyClick(key, modifiers);
        return events;
    };
    QTest::newRow("Enter moves right") << QPoint(2, 1) << "" << keys({{Qt::Key_Return, {}}}) << QPoint(2, 2) << 7;
    QTest::newRow("Enter skips disabled columns") << QPoint(2, 1) << "2,3" << keys({{Qt::Key_Return, {}}})
                                                  << QPoint(2, 4) << 7;
    QTest::newRow("Enter at the row's end") << QPoint(2, 7) << "" << keys({{Qt::Key_Enter, {}}}) << QPoint(3, 1) << 7;
    QTest::newRow("Enter on the last cell adds") << QPoint(6, 7) << "" << keys({{Qt::Key_Return, {}}})
                                                 << QPoint(7, 1) << 8;
    QTest::newRow("Shift+Enter goes back") << QPoint(5, 3) << "" << keys({{Qt::Key_Return, Qt::ShiftModifier}})
                                           << QPoint(5, 2) << 7;
    QTest::newRow("Shift+Enter wraps up") << QPoint(5, 1) << "" << keys({{Qt::Key_Return, Qt::ShiftModifier}})
                                          << QPoint(4, 7) << 7;
    QTest::newRow("Shift+Enter at the first cell") << QPoint(1, 1) << "" << keys({{Qt::Key_Return, Qt::ShiftModifier}})
                                                   << QPoint(1, 1) << 7;
    QTest::newRow("Ctrl+Shift+Enter is Enter") << QPoint(5, 3) << ""
                                               << keys({{Qt::Key_Return, Qt::ShiftModifier | Qt::ControlModifier}})
                                               << QPoint(5, 4) << 7;
    QTest::newRow("Up, Down, Up") << QPoint(3, 2) << "" << keys({{Qt::Key_Up, {}}, {Qt::Key_Down, {}}, {Qt::Key_Up, {}}})
                                  << QPoint(2, 2) << 7;
    QTest::newRow("Up on the first row") << QPoint(1, 2) << "" << keys({{Qt::Key_Up, {}}}) << QPoint(1, 2) << 7;
    QTest::newRow("End") << QPoint(3, 3) << "" << keys({{Qt::Key_End, {}}}) << QPoint(6, 7) << 7;
    QTest::newRow("Home") << QPoint(3, 3) << "" << keys({{Qt::Key_Home, {}}}) << QPoint(1, 1) << 7;
}

void tst_gridcontrol_editor::moveKeys()
{
    QFETCH(QPoint, start);
    QFETCH(QTestEventList, keys);
    Database db;
    QFETCH(QString, disabled);
    auto g = grid(db, disabled);
    FlexGrid *view = GridInternals::grid(*g);
    view->setRow(start.x());
    view->setCol(start.y());
    keys.simulate(GridInternals::editor(*g));
    QTEST(QPoint(view->Row(), view->Col()), "cell");
    QTEST(view->Rows(), "rows");
    QLineEdit *editor = GridInternals::editor(*g);
    QCOMPARE(editor->selectedText(), editor->text()); // the whole text is selected
    QCOMPARE(g->DataArray().UBound(2) + 1, g->RowStatusArray().size());
}

void tst_gridcontrol_editor::helpKey()
{
    Database db;
    auto g = grid(db);
    QList<int> helpCols;
    bool cancel = true;
    connect(g.get(), &gridcontrol::InvokeHelp, g.get(), [&](qint16 &Col, QVariant &value, bool &Cancel) {
        helpCols << Col;
        QCOMPARE(value.toDouble(), 1.5);
        Cancel = cancel;
    });
    FlexGrid *view = GridInternals::grid(*g);
    view->setCol(3);
    QTest::keyClick(GridInternals::editor(*g), Qt::Key_F1);
    QCOMPARE(helpCols, QList<int>{2}); // the data column, counted from 0
    cancel = false;
    QTest::keyClick(GridInternals::editor(*g), Qt::Key_F1);
    QCOMPARE(helpCols.size(), 2);
    QCOMPARE(view->Col(), 3);
}

// "item" is not editable: locked on loaded rows, open on added ones.
void tst_gridcontrol_editor::notEditableColumnsLockLoadedRows()
{
    Database db;
    db.fillLines(2);
    auto rs2 = db.open(QStringLiteral("SELECT * FROM lines"));
    gridcontrol g;
    g.setGridHeader(QStringLiteral("a,b,c,d,e,f,g"));
    g.setNotEditableFields(QStringLiteral("ITEM"));
    g.show();
    g.MakeStruct(rs2.get());
    g.bShowMenu = true;
    g.setDisableCol(QString());
    g.setInvokeHelpCol(QString());
    g.setMandatoryCol(QString());
    g.MakeGridStructure();
    FlexGrid *view = GridInternals::grid(g);
    QLineEdit *editor = GridInternals::editor(g);
    view->setRow(2);
    QVERIFY(!editor->isEnabled());
    view->setCol(2);
    QVERIFY(editor->isEnabled());
    g.GridRowAddnew();
    QCOMPARE(view->Col(), 1);
    g.TopRow();
    view->setRow(3);
    QVERIFY(editor->isEnabled()); // the added row's item can be typed
}

QTEST_MAIN(tst_gridcontrol_editor)
#include "tst_gridcontrol_editor.moc"
