#pragma once

#include <PanelKestrin/variantmatrix.h>

#include <QCoreApplication>
#include <QDate>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace PanelKestrin { class Connection; }

// The lines of one order as the order-lines grid shows them, and the writing back of what the
// user changed in the grid: added rows become inserts, edited rows updates, and loaded lines
// that are no longer in the grid deletes, all in one transaction.
class OrderLinesTable
{
    Q_DECLARE_TR_FUNCTIONS(OrderLinesTable)

public:
    // The grid's fields, in the order of the select list (data column = grid column - 1).
    enum Column { LineNo, ItemCode, Quantity, UnitPrice, Discount, DeliveryDate, ColumnCount };

    // One grid row read back for saving. lineNo 0 on an added row means "the next free number".
    // A blank unit price (0) takes the item's list price, a discount of 0 is stored as none.
    struct Line {
        int gridRow = 0;
        int lineNo = 0;
        QString itemCode;
        int quantity = 0;
        double unitPrice = 0;
        double discount = 0;
        QVariant deliveryDate; // a QDate, or Empty for none
    };

    // What a save has to do, or why it cannot be done.
    struct Changes {
        QVector<int> deletes;
        QVector<Line> updates;
        QVector<Line> inserts;
        QString problem; // empty when the rows can be written
    };

    // The statement the grid is loaded from.
    static QString selectStatement(int orderNo);

    // The line numbers of the rows loaded from the database (status "" or "E").
    static QSet<int> loadedLineNumbers(const PanelKestrin::VariantMatrix &data, const QStringList &statuses);

    // Compares the grid's data and row statuses with the lines it was loaded with. Added rows
    // left entirely blank are not saved. Every row to write needs an item and a quantity; line
    // numbers typed on added rows must be free.
    static Changes changesFrom(const PanelKestrin::VariantMatrix &data, const QStringList &statuses,
                               const QSet<int> &loadedLines);

    // Deletes, updates and inserts in one transaction; on any failure rolls back and rethrows
    // the database's error.
    static void write(PanelKestrin::Connection &cn, int orderNo, const Changes &changes);

    // The text of a grid value: trimmed, "" for Empty and Null.
    static QString textOf(const QVariant &value);
    // The number of a grid value; blank reads as 0.
    static double numberOf(const QVariant &value);
    // The date of a date cell's value: a loaded date, or the month-first text an edited cell
    // holds; invalid when it is neither.
    static QDate dateOf(const QVariant &value);
};
