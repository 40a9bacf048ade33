#include "orderlinestable.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>

#include <algorithm>

using namespace PanelKestrin;

namespace {

const QString kAdded = QStringLiteral("A");
const QString kEdited = QStringLiteral("E");

// A blank or zero price leaves the price to the item list. The parameters are typed where the
// statement does not tell a server which type they have.
const QString kPrice =
    QStringLiteral("COALESCE(NULLIF(CAST(? AS NUMERIC(10,2)), 0), (SELECT unit_price FROM items WHERE item_code = ?))");

QVariant discountValue(double discount)
{
    return discount == 0 ? QVariant() : QVariant(discount);
}

} // namespace

QString OrderLinesTable::selectStatement(int orderNo)
{
    return QStringLiteral("SELECT line_no, item_code, quantity, unit_price, discount, delivery_date "
                          "FROM order_lines WHERE order_no = %1 ORDER BY line_no")
        .arg(orderNo);
}

QString OrderLinesTable::textOf(const QVariant &value)
{
    return isEmpty(value) || isNull(value) ? QString() : Trim(CStr(value));
}

double OrderLinesTable::numberOf(const QVariant &value)
{
    // Val of the value itself: numbers are read with ".", whatever the user's decimal separator.
    return isEmpty(value) || isNull(value) ? 0 : Val(value);
}

QDate OrderLinesTable::dateOf(const QVariant &value)
{
    if (value.metaType().id() == QMetaType::QDate || value.metaType().id() == QMetaType::QDateTime)
        return value.toDate();
    // An edited cell gives its date month first, whatever the user's settings.
    return QDate::fromString(textOf(value), QStringLiteral("MM/dd/yyyy"));
}

QSet<int> OrderLinesTable::loadedLineNumbers(const VariantMatrix &data, const QStringList &statuses)
{
    QSet<int> lines;
    for (int i = 0; i <= data.UBound(2) && i < statuses.size(); ++i)
        if (statuses.at(i) != kAdded)
            lines.insert(qRound(numberOf(data(LineNo, i))));
    return lines;
}

OrderLinesTable::Changes OrderLinesTable::changesFrom(const VariantMatrix &data, const QStringList &statuses,
                                                      const QSet<int> &loadedLines)
{
    Changes changes;
    QSet<int> kept;
    QSet<int> typed;
    for (int i = 0; i <= data.UBound(2) && i < statuses.size(); ++i) {
        Line line;
        line.gridRow = i + 1;
        line.lineNo = qRound(numberOf(data(LineNo, i)));
        line.itemCode = textOf(data(ItemCode, i));
        line.quantity = qRound(numberOf(data(Quantity, i)));
        line.unitPrice = numberOf(data(UnitPrice, i));
        line.discount = numberOf(data(Discount, i));
        const QString delivery = textOf(data(DeliveryDate, i));
        const QString &status = statuses.at(i);

        if (status != kAdded) {
            kept.insert(line.lineNo);
            if (status != kEdited)
                continue;
        } else if (line.lineNo == 0 && line.itemCode.isEmpty() && line.quantity == 0 && line.unitPrice == 0
                   && line.discount == 0 && delivery.isEmpty()) {
            continue; // an added row nobody filled in
        } else if (line.lineNo != 0) {
            if (typed.contains(line.lineNo) && changes.problem.isEmpty())
                changes.problem = tr("Line number %1 is given twice.").arg(line.lineNo);
            typed.insert(line.lineNo);
        }

        if (!delivery.isEmpty()) {
            const QDate date = dateOf(data(DeliveryDate, i));
            if (date.isValid())
                line.deliveryDate = date;
            else if (changes.problem.isEmpty())
                changes.problem = tr("Row %1: the delivery date \"%2\" is not a date.").arg(line.gridRow).arg(delivery);
        }
        if ((line.itemCode.isEmpty() || line.quantity < 1) && changes.problem.isEmpty())
            changes.problem = tr("Row %1 needs an item and a quantity of at least 1.").arg(line.gridRow);
        (status == kAdded ? changes.inserts : changes.updates).append(line);
    }

    for (int lineNo : typed)
        if (kept.contains(lineNo) && changes.problem.isEmpty())
            changes.problem = tr("Line number %1 is already on this order.").arg(lineNo);
    for (int lineNo : loadedLines)
        if (!kept.contains(lineNo))
            changes.deletes.append(lineNo);
    std::sort(changes.deletes.begin(), changes.deletes.end());
    // Typed numbers first, so that the numbers given out to blank ones cannot take them.
    std::stable_partition(changes.inserts.begin(), changes.inserts.end(), [](const Line &l) { return l.lineNo != 0; });
    return changes;
}

namespace {

void insert(Connection &cn, int orderNo, int lineNo, const OrderLinesTable::Line &l)
{
    cn.Execute(QStringLiteral("INSERT INTO order_lines (order_no, line_no, item_code, quantity, unit_price,"
                              " discount, delivery_date) VALUES (?, ?, ?, ?, ")
                   + kPrice + QStringLiteral(", ?, ?)"),
               {orderNo, lineNo, l.itemCode, l.quantity, l.unitPrice, l.itemCode, discountValue(l.discount),
                l.deliveryDate});
}

// The number after the order's highest line number, 1 for an order without lines.
int nextLineNo(Connection &cn, int orderNo)
{
    Recordset highest;
    highest.Open(QStringLiteral("SELECT COALESCE(MAX(line_no), 0) + 1 FROM order_lines WHERE order_no = %1").arg(orderNo),
                 &cn);
    return int(Val(highest.Fields().Item(0).Value()));
}

} // namespace

void OrderLinesTable::write(Connection &cn, int orderNo, const Changes &changes)
{
    cn.Execute(QStringLiteral("BEGIN"));
    try {
        for (int lineNo : changes.deletes)
            cn.Execute(QStringLiteral("DELETE FROM order_lines WHERE order_no = ? AND line_no = ?"), {orderNo, lineNo});
        for (const Line &l : changes.updates)
            cn.Execute(QStringLiteral("UPDATE order_lines SET item_code = ?, quantity = ?, unit_price = ") + kPrice
                           + QStringLiteral(", discount = ?, delivery_date = ? WHERE order_no = ? AND line_no = ?"),
                       {l.itemCode, l.quantity, l.unitPrice, l.itemCode, discountValue(l.discount), l.deliveryDate,
                        orderNo, l.lineNo});
        for (const Line &l : changes.inserts) {
            if (l.lineNo != 0)
                insert(cn, orderNo, l.lineNo, l);
        }
        for (const Line &l : changes.inserts) {
            if (l.lineNo == 0)
                insert(cn, orderNo, nextLineNo(cn, orderNo), l);
        }
        cn.Execute(QStringLiteral("COMMIT"));
    } catch (...) {
        try {
            cn.Execute(QStringLiteral("ROLLBACK"));
        } catch (const RuntimeError &) {
            // The failed statement may already have ended the transaction; the first error counts.
        }
        throw;
    }
}
