// The grid's column structure: field descriptions from real tables, the shown fields, the
// column rules, headers and widths, and the errors a host meets when it gets them wrong.
#include "data/datatestsupport.h"
#include "gridtestsupport.h"

#include <QRegularExpression>
#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;
using DataTest::capture;

class tst_gridcontrol_structure : public QObject
{
    Q_OBJECT

private slots:
    void init() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { settle(); }

    void describesEachFieldType_data();
    void describesEachFieldType();
    void sameDescriptionsFromPostgres();
    void unrecognisedTypesAreReported_data();
    void unrecognisedTypesAreReported();
    void loadsRowsAndCells();
    void emptyRecordsetGivesOneAddedRow();
    void fieldListShowsNamedFields();
    void columnNameListsMatchSubstrings();
    void columnRules_data();
    void columnRules();
    void headersAndWidths();
};

// One column declared after an optional preceding one; the grid's description of the second.
void tst_gridcontrol_structure::describesEachFieldType_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("declaration");
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("blankAllowed");

    QTest::newRow("varchar") << "" << "VARCHAR(30)" << "C" << 30 << 0 << true;
    QTest::newRow("varchar not null") << "" << "VARCHAR(8) NOT NULL" << "C" << 8 << 0 << false;
    QTest::newRow("char") << "" << "CHAR(4)" << "C" << 4 << 0 << true;
    QTest::newRow("numeric") << "" << "NUMERIC(10,2)" << "N" << 10 << 2 << true;
    QTest::newRow("integer not null") << "" << "INTEGER NOT NULL" << "N" << 10 << 0 << false;
    QTest::newRow("smallint") << "" << "SMALLINT" << "N" << 5 << 0 << true;
    QTest::newRow("date") << "" << "DATE" << "D" << 10 << 0 << true;
    QTest::newRow("boolean") << "" << "BOOLEAN" << "B" << 1 << 0 << true;
    // Unrecognised types take the previous recognised letter with no size.
    QTest::newRow("text after varchar") << "VARCHAR(5)" << "TEXT" << "C" << 0 << 0 << true;
    QTest::newRow("single after date") << "DATE" << "FLOAT4" << "D" << 0 << 0 << true;
    QTest::newRow("bigint after integer") << "INTEGER" << "BIGINT" << "N" << 0 << 0 << true;
    QTest::newRow("bigint first") << "" << "BIGINT" << "" << 0 << 0 << true;
}

void tst_gridcontrol_structure::describesEachFieldType()
{
    QFETCH(QString, before);
    QFETCH(QString, declaration);
    Database db;
    db.cn.Execute(before.isEmpty() ? QStringLiteral("CREATE TABLE t (b %1)").arg(declaration)
                                   : QStringLiteral("CREATE TABLE t (a %1, b %2)").arg(before, declaration));
    auto rs = db.open(QStringLiteral("SELECT * FROM t"));
    auto grid = makeGrid(*rs);

    const RecStruct rec = GridInternals::recStructs(*grid).last();
    QTEST(rec.DataType, "type");
    QTEST(int(rec.Length), "length");
    QTEST(int(rec.Decimal), "decimals");
    QTEST(rec.Null, "blankAllowed");
}

void tst_gridcontrol_structure::sameDescriptionsFromPostgres()
{
    QTemporaryDir dir;
    Connection sqlite, postgres;
    OPEN_ENGINE(sqlite, QStringLiteral("sqlite"), dir);
    OPEN_ENGINE(postgres, QStringLiteral("postgres"), dir);
    QVector<QVector<RecStruct>> described;
    for (Connection *cn : {&sqlite, &postgres}) {
        DataTest::recreateTable(*cn, QStringLiteral("grid_lines"),
                                QString::fromLatin1(orderLinesTable()).section(QLatin1Char('('), 1).chopped(1));
        cn->Execute(QStringLiteral("INSERT INTO grid_lines VALUES ('IT1', NULL, 3, 4.5, '2026-03-01', TRUE, 1)"));
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM grid_lines"), cn);
        auto grid = makeGrid(rs);
        described << GridInternals::recStructs(*grid);
        QCOMPARE(grid->DataArray().value(2, 0).toInt(), 3);
        QCOMPARE(grid->vColumnValue(1, 2).toString(), QString()); // Null shows blank
    }
    QCOMPARE(described.at(1).size(), described.at(0).size());
    for (int i = 0; i < described.at(0).size(); ++i) {
        const RecStruct &a = described.at(0).at(i), &b = described.at(1).at(i);
        QCOMPARE(b.DataType, a.DataType);
        QCOMPARE(b.Length, a.Length);
        QCOMPARE(b.Decimal, a.Decimal);
        QCOMPARE(b.Null, a.Null);
    }
}

// A column whose type the grid does not describe refuses typing; the developer is told which
// field it is and what to declare instead.
void tst_gridcontrol_structure::unrecognisedTypesAreReported_data()
{
    QTest::addColumn<QString>("columns");
    QTest::addColumn<QString>("warning"); // a pattern; empty: no warning

    QTest::newRow("text after integer") << "qty INTEGER, notes TEXT" << "\"notes\".*201.*\"N\".*VARCHAR\\(n\\) or CHAR\\(n\\)";
    QTest::newRow("text first") << "notes TEXT, qty INTEGER" << "\"notes\".*201.*VARCHAR\\(n\\)";
    QTest::newRow("bigint") << "code BIGINT" << "\"code\".*20.*INTEGER.*NUMERIC\\(p,0\\)";
    QTest::newRow("single") << "weight FLOAT4" << "\"weight\".*DOUBLE PRECISION";
    QTest::newRow("every recognised type") << QString::fromLatin1(orderLinesTable()).section(QLatin1Char('('), 1).chopped(1)
                                           << "";
}

namespace {
QStringList gridWarnings;
void collectGridWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg && qstrcmp(context.category, "panelkestrin.grid") == 0)
        gridWarnings << message;
}
} // namespace

void tst_gridcontrol_structure::unrecognisedTypesAreReported()
{
    QFETCH(QString, columns);
    QFETCH(QString, warning);
    Database db;
    db.cn.Execute(QStringLiteral("CREATE TABLE w (%1)").arg(columns));
    auto rs = db.open(QStringLiteral("SELECT * FROM w"));
    gridWarnings.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectGridWarnings);
    auto grid = makeGrid(*rs);
    qInstallMessageHandler(previous);

    if (warning.isEmpty()) {
        QCOMPARE(gridWarnings, QStringList());
    } else {
        QCOMPARE(gridWarnings.size(), 1);
        QVERIFY2(QRegularExpression(warning).match(gridWarnings.first()).hasMatch(), qPrintable(gridWarnings.first()));
    }
}

void tst_gridcontrol_structure::loadsRowsAndCells()
{
    LinesGrid lines(3, QStringLiteral("SELECT * FROM lines ORDER BY qty"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);

    QCOMPARE(view->Rows(), 4);
    QCOMPARE(view->Cols(), 8);
    QCOMPARE(grid->RowStatusArray(), QStringList({"", "", ""}));
    QVERIFY(lines.rs->adoEOF()); // the load reads the recordset to its end
    const VariantMatrix data = grid->DataArray();
    QCOMPARE(data.UBound(1), 6);
    QCOMPARE(data.UBound(2), 2);
    QCOMPARE(data(0, 1).toString(), QStringLiteral("IT002"));
    QCOMPARE(view->TextMatrix(2, 1), QStringLiteral("IT002"));
    QCOMPARE(view->TextMatrix(3, 4), QStringLiteral("3.5"));
    QCOMPARE(view->TextMatrix(1, 5), QStringLiteral("01/02/2026"));
    QCOMPARE(view->TextMatrix(0, 3), QStringLiteral("QTY"));
    QCOMPARE(view->ColAlignment(3), int(FlexGrid::flexAlignLeftTop));
    QCOMPARE(view->ColWidth(0), PixelsToTwipsX(TwipsToPixelsX(200, view), view)); // whole pixels
    // The editor is placed on the current data cell and holds its text.
    QCOMPARE(GridInternals::editor(*grid)->text(), view->Text());
    QCOMPARE(view->TextMatrix(view->Row(), 0), QStringLiteral(">"));
}

void tst_gridcontrol_structure::emptyRecordsetGivesOneAddedRow()
{
    LinesGrid lines(0, QStringLiteral("SELECT * FROM lines"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);

    QCOMPARE(view->Rows(), 2);
    QCOMPARE(grid->RowStatusArray(), QStringList{QStringLiteral("A")});
    const VariantMatrix data = grid->DataArray();
    QCOMPARE(data.UBound(1), 6);
    QCOMPARE(data.UBound(2), 0);
    QVERIFY(isEmpty(data(3, 0)));
    QCOMPARE(view->TextMatrix(1, 1), QString());
}

void tst_gridcontrol_structure::fieldListShowsNamedFields()
{
    Database db;
    db.fillLines(2);
    auto rs = db.open(QStringLiteral("SELECT * FROM lines"));
    gridcontrol grid;
    grid.setGridHeader(QStringLiteral("Item,Qty"));
    grid.MakeStruct(rs.get(), QStringList{QStringLiteral("item"), QStringLiteral("QTY")});

    QCOMPARE(GridInternals::grid(grid)->Cols(), 3);
    const QVector<RecStruct> recs = GridInternals::recStructs(grid);
    QCOMPARE(recs.size(), 2);
    QCOMPARE(recs.at(1).DataType, QStringLiteral("N"));
    QCOMPARE(grid.DataArray()(1, 1).toInt(), 2);
    QCOMPARE(GridInternals::grid(grid)->TextMatrix(0, 2), QStringLiteral("Qty"));
}

// Column names are matched as case-insensitive substrings of the lists.
void tst_gridcontrol_structure::columnNameListsMatchSubstrings()
{
    Database db;
    db.cn.Execute(QStringLiteral("CREATE TABLE c (name VARCHAR(10), custname VARCHAR(10), city VARCHAR(10), code VARCHAR(4))"));
    auto rs = db.open(QStringLiteral("SELECT * FROM c"));
    gridcontrol grid;
    grid.setGridHeader(QStringLiteral("a,b,c,d"));
    grid.setNotEditableFields(QStringLiteral("custName"));
    grid.setNotBlankCols(QStringLiteral("CITY;CODE"));
    grid.MakeStruct(rs.get());

    QCOMPARE(GridInternals::notEditCols(grid), QStringLiteral("1,2,"));
    const QVector<RecStruct> recs = GridInternals::recStructs(grid);
    QCOMPARE(recs.at(0).Null, true);
    QCOMPARE(recs.at(2).Null, false);
    QCOMPARE(recs.at(3).Null, false);
}

// Column rules on a grid of three data columns (rules 0..4). "-" marks a list never assigned.
void tst_gridcontrol_structure::columnRules_data()
{
    QTest::addColumn<QString>("disabled");
    QTest::addColumn<QString>("help");
    QTest::addColumn<QString>("mandatory");
    QTest::addColumn<QString>("enabled");    // ColEnable of grid columns 0..Cols, as 0/1
    QTest::addColumn<QString>("mandatories");
    QTest::addColumn<int>("error");

    QTest::newRow("no rules") << "" << "" << "" << "11110" << "00000" << 0;
    QTest::newRow("disabled") << "1,3" << "" << "" << "10100" << "00000" << 0;
    QTest::newRow("help re-enables") << "2" << "2" << "" << "11110" << "00000" << 0;
    QTest::newRow("mandatory") << "" << "" << "3,1" << "11110" << "01010" << 0;
    QTest::newRow("past the last column") << "4" << "" << "" << "11110" << "00000" << 0;
    QTest::newRow("not a number") << "x" << "" << "" << "" << "" << int(ErrTypeMismatch);
    QTest::newRow("beyond the rules") << "5" << "" << "" << "" << "" << int(ErrSubscriptOutOfRange);
    QTest::newRow("list never assigned") << "" << "-" << "" << "" << "" << int(ErrSubscriptOutOfRange);
}

void tst_gridcontrol_structure::columnRules()
{
    QFETCH(QString, disabled);
    QFETCH(QString, help);
    QFETCH(QString, mandatory);
    QFETCH(int, error);
    Database db;
    db.cn.Execute(QStringLiteral("CREATE TABLE r (a VARCHAR(4), b INTEGER, c DATE)"));
    auto rs = db.open(QStringLiteral("SELECT * FROM r"));
    gridcontrol grid;
    grid.setGridHeader(QStringLiteral("a,b,c"));
    grid.MakeStruct(rs.get());
    grid.setDisableCol(disabled);
    if (help != QLatin1String("-"))
        grid.setInvokeHelpCol(help);
    grid.setMandatoryCol(mandatory);
    QCOMPARE(capture([&] { grid.MakeGridStructure(); }).number, error);
    if (error)
        return;

    QString enabled, mandatories;
    for (const GridStruct &rule : GridInternals::gridStructs(grid)) {
        enabled += rule.ColEnable ? QLatin1Char('1') : QLatin1Char('0');
        mandatories += rule.ColMandatory ? QLatin1Char('1') : QLatin1Char('0');
        QVERIFY(!rule.HelpInvoked);
    }
    QTEST(enabled, "enabled");
    QTEST(mandatories, "mandatories");
}

void tst_gridcontrol_structure::headersAndWidths()
{
    LinesGrid lines(2, QStringLiteral("SELECT item, qty, price FROM lines"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);
    view->setTextMatrix(0, 0, QStringLiteral("#"));

    grid->ChangeGridHeader({QVariantList{"Item", "Quantity", "Price", "ignored"}, QVariantList{"other"}});
    QCOMPARE(view->TextMatrix(0, 0), QStringLiteral("#"));
    QCOMPARE(view->TextMatrix(0, 2), QStringLiteral("Quantity"));
    const QVariantList tooFew{QVariant(QVariantList{"Item"})};
    QCOMPARE(capture([&] { grid->ChangeGridHeader(tooFew); }).number, int(ErrSubscriptOutOfRange));

    grid->FixColSizes({0, 1500, 900, 1200});
    QCOMPARE(view->ColWidth(1), 1500);
    QCOMPARE(view->ColWidth(2), 900);
    QCOMPARE(view->ColWidth(0), PixelsToTwipsX(TwipsToPixelsX(200, view), view)); // entry 0 is ignored
    view->setCol(3);
    grid->FixColSizes({0, 3000, 3000}); // one entry short: nothing resized
    QCOMPARE(view->ColWidth(1), 1500);
    QCOMPARE(view->Col(), 1);

    // A header list shorter than the fields fails the load, and the grid still paints.
    auto again = lines.db.open(QStringLiteral("SELECT item, qty, price FROM lines"));
    grid->setGridHeader(QStringLiteral("Item,Qty"));
    QCOMPARE(capture([&] { grid->MakeStruct(again.get()); }).number, int(ErrSubscriptOutOfRange));
    QVERIFY(view->Redraw());
    QCOMPARE(capture([&] { grid->MakeStruct(nullptr); }).number, int(ErrObjectNotSet));
}

QTEST_MAIN(tst_gridcontrol_structure)
#include "tst_gridcontrol_structure.moc"
