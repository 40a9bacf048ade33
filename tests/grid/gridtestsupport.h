#pragma once

// Shared set-up for the editable grid's tests: a SQLite database with a column of every type
// the grid describes, a grid sized in twips, and read access to the grid's private state.

#include <PanelKestrin/connection.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/format.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/twips.h>
#include <PanelKestrin/variant.h>

#include "grid/gridcontrol_p.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTableView>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace PanelKestrin {

// The grid's private state as the tests read it, through its private header.
struct GridInternals {
    static gridcontrolPrivate *of(gridcontrol &g) { return gridcontrolPrivate::get(&g); }
    static FlexGrid *grid(gridcontrol &g) { return of(g)->flexgrid; }
    static QLineEdit *editor(gridcontrol &g) { return of(g)->TxtAdjust; }
    static const QVector<RecStruct> &recStructs(gridcontrol &g) { return of(g)->RecStructArray; }
    static const QVector<GridStruct> &gridStructs(gridcontrol &g) { return of(g)->GridStructArray; }
    static QString notEditCols(gridcontrol &g) { return of(g)->sNotEditCols; }
    static qint16 pageSize(gridcontrol &g) { return of(g)->iPageSize; }
    static bool &holdCell(gridcontrol &g) { return of(g)->bHoldCell; }
    static QStringList &statuses(gridcontrol &g) { return of(g)->mRowStatusArray; }
    static bool removeRow(gridcontrol &g, qint32 row) { return of(g)->RemoveGridRow(row); }
};

} // namespace PanelKestrin

namespace GridTest {

using namespace PanelKestrin;

// Order lines with one column of each kind the grid describes.
inline const char *orderLinesTable()
{
    return "CREATE TABLE lines ("
           " item VARCHAR(10) NOT NULL,"
           " descr VARCHAR(30),"
           " qty INTEGER NOT NULL,"
           " price NUMERIC(10,2),"
           " due DATE,"
           " urgent BOOLEAN,"
           " lineno SMALLINT)";
}

// A SQLite file in a temporary folder, opened.
struct Database {
    QTemporaryDir dir;
    Connection cn;

    Database()
    {
        const QString path = dir.filePath(QStringLiteral("grid.sqlite"));
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.close();
        cn.Open(QStringLiteral("Provider=SQLite;Data Source=%1").arg(path));
    }

    // Creates the order-lines table with rows numbered 1..rows.
    void fillLines(int rows)
    {
        cn.Execute(QString::fromLatin1(orderLinesTable()));
        cn.Execute(QStringLiteral("BEGIN"));
        for (int i = 1; i <= rows; ++i)
            cn.Execute(QStringLiteral("INSERT INTO lines VALUES (?, ?, ?, ?, ?, ?, ?)"),
                       {QStringLiteral("IT%1").arg(i, 3, 10, QLatin1Char('0')), QStringLiteral("ITEM %1").arg(i), i,
                        i + 0.5, QStringLiteral("2026-01-%1").arg(i % 28 + 1, 2, 10, QLatin1Char('0')), i % 2 == 0, i});
        cn.Execute(QStringLiteral("COMMIT"));
    }

    std::unique_ptr<Recordset> open(const QString &sql)
    {
        auto rs = std::make_unique<Recordset>();
        rs->Open(sql, &cn);
        return rs;
    }
};

// Lets queued work finish: MakeStruct sends "{Right}{Left}" through the keyboard queue, one key
// per event-loop turn, and those keys must not reach a later test's widgets.
inline void settle()
{
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
}

// A grid of the given height in twips, shown, its structure built from the recordset with every
// column enabled and no column rules.
inline std::unique_ptr<gridcontrol> makeGrid(Recordset &rs, int heightTwips = 3600, const QString &header = QString())
{
    auto grid = std::make_unique<gridcontrol>();
    grid->resize(TwipsToPixelsX(7200, grid.get()), TwipsToPixelsY(heightTwips, grid.get()));
    QStringList captions;
    for (int i = 0; i < rs.Fields().Count(); ++i)
        captions << rs.Fields().Item(i).Name().toUpper();
    grid->setGridHeader(header.isNull() ? captions.join(QLatin1Char(',')) : header);
    grid->show();
    grid->MakeStruct(&rs);
    grid->setDisableCol(QString());
    grid->setInvokeHelpCol(QString());
    grid->setMandatoryCol(QString());
    grid->MakeGridStructure();
    settle();
    return grid;
}

// The order-lines table filled with rows rows and a grid over the result of sql, as makeGrid
// builds it. The members are destroyed in reverse order: the grid before its recordset.
struct LinesGrid {
    Database db;
    std::unique_ptr<Recordset> rs;
    std::unique_ptr<gridcontrol> grid;

    LinesGrid(int rows, const QString &sql, int heightTwips = 3600)
    {
        db.fillLines(rows);
        rs = db.open(sql);
        grid = makeGrid(*rs, heightTwips);
    }
};

// Whether the screen and the store agree: every grid row shows what the data array holds for it
// (character values without their padding, numbers by value, dates as typed or as stored), the
// statuses have one entry per data row, and the only grid row without a data row is a blank
// last row, the one SaveLastCol leaves. Returns what disagrees, or an empty text.
inline QString screenStoreMismatch(gridcontrol &g)
{
    FlexGrid *view = GridInternals::grid(g);
    const VariantMatrix data = g.DataArray();
    const QVector<RecStruct> &recs = GridInternals::recStructs(g);
    const int dataRows = data.UBound(2) + 1;
    const int gridRows = view->Rows() - 1;
    if (g.RowStatusArray().size() != dataRows)
        return QStringLiteral("%1 statuses for %2 data rows").arg(g.RowStatusArray().size()).arg(dataRows);
    const auto blankRow = [&](int r) {
        for (int c = 1; c < view->Cols(); ++c)
            if (!Trim(view->TextMatrix(r, c)).isEmpty())
                return false;
        return true;
    };
    if (gridRows != dataRows && !(gridRows == dataRows + 1 && blankRow(gridRows)))
        return QStringLiteral("%1 grid rows for %2 data rows").arg(gridRows).arg(dataRows);
    const QString mark = CStr(g.gValue);
    for (int r = 1; r <= dataRows; ++r) {
        for (int c = 1; c < view->Cols(); ++c) {
            const QString text = view->TextMatrix(r, c);
            const QVariant value = data(c - 1, r - 1);
            const QString type = recs.value(c - 1).DataType;
            bool same = true;
            if (c == g.gColToFix && !mark.isEmpty() && text == mark)
                same = Trim(CStr(value)) == QLatin1String("X") || Trim(CStr(value)) == mark;
            else if (isNull(value) || isEmpty(value))
                same = Trim(text).isEmpty();
            else if (type == QLatin1String("N"))
                same = Val(text) == Val(value);
            else if (type == QLatin1String("C") || type == QLatin1String("D"))
                same = Trim(text) == Trim(CStr(value)) || Format(text, QStringLiteral("mm/dd/yyyy")) == CStr(value);
            if (!same)
                return QStringLiteral("cell (%1, %2) shows \"%3\", the store holds \"%4\"")
                    .arg(r).arg(c).arg(text, CStr(value));
        }
    }
    return QString();
}

// Records the message boxes a test provokes and answers them with OK.
struct MessageLog {
    QStringList prompts;
    QStringList titles;
    MessageBoxHandler previous;
    MessageLog()
    {
        previous = setMessageBoxHandler([this](const QString &prompt, int, const QString &title) {
            prompts << prompt;
            titles << title;
            return int(vbOK);
        });
    }
    ~MessageLog() { setMessageBoxHandler(previous); }
};

} // namespace GridTest
