#include "demodatabase.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStringList>
#include <QVariantList>

using PanelKestrin::Connection;
using PanelKestrin::Recordset;
using PanelKestrin::RuntimeError;

namespace {

const char *const kSchema[] = {
    "CREATE TABLE customers ("
    " cust_code VARCHAR(8) NOT NULL PRIMARY KEY,"
    " cust_name VARCHAR(40) NOT NULL,"
    " city VARCHAR(30),"
    " phone VARCHAR(20),"
    " credit_limit NUMERIC(12,2),"
    " discount_pct SMALLINT,"
    " date_of_birth DATE,"
    " start_date DATE,"
    " active BOOLEAN NOT NULL)",
    "CREATE TABLE items ("
    " item_code VARCHAR(10) NOT NULL PRIMARY KEY,"
    " description VARCHAR(40) NOT NULL,"
    " unit VARCHAR(6),"
    " unit_price NUMERIC(10,2) NOT NULL,"
    " stock_qty INTEGER,"
    " reorder_level SMALLINT,"
    " taxable BOOLEAN NOT NULL)",
    "CREATE TABLE orders ("
    " order_no INTEGER NOT NULL PRIMARY KEY,"
    " cust_code VARCHAR(8) NOT NULL REFERENCES customers(cust_code),"
    " order_date DATE NOT NULL,"
    " delivery_date DATE,"
    " status VARCHAR(10),"
    " priority SMALLINT,"
    " paid BOOLEAN NOT NULL)",
    "CREATE TABLE order_lines ("
    " order_no INTEGER NOT NULL REFERENCES orders(order_no),"
    " line_no SMALLINT NOT NULL,"
    " item_code VARCHAR(10) NOT NULL REFERENCES items(item_code),"
    " quantity INTEGER NOT NULL,"
    " unit_price NUMERIC(10,2) NOT NULL,"
    " discount NUMERIC(5,2),"
    " delivery_date DATE,"
    " PRIMARY KEY (order_no, line_no))",
};

const QStringList kNameFirst = {
    "HARBOUR", "NORTHGATE", "SILVERLINE", "GREENFIELD", "BLUE RIVER", "OAKWOOD", "SUMMIT",
    "REDSTONE", "LAKESIDE", "EASTWIND", "MERIDIAN", "PINECREST", "KINGSWAY", "BRIGHTON",
    "FAIRVIEW", "IRONBRIDGE", "WESTBROOK", "CEDAR", "HIGHLAND", "RIVERSIDE"};
const QStringList kNameSecond = {
    "TRADING", "SUPPLIES", "HARDWARE", "STORES", "WHOLESALE", "DISTRIBUTORS", "FOODS",
    "ELECTRICALS", "PHARMACY", "MOTORS", "TEXTILES", "STATIONERS"};
const QStringList kCities = {
    "LEEDS", "BRISTOL", "MANCHESTER", "GLASGOW", "CARDIFF", "YORK", "NORWICH", "EXETER",
    "DUNDEE", "BELFAST", "LEICESTER", "PLYMOUTH"};

struct ItemSeed { const char *description; const char *unit; double price; };
const ItemSeed kItems[] = {
    {"A4 COPIER PAPER 80GSM", "REAM", 4.35}, {"BALLPOINT PEN BLUE", "BOX", 3.10},
    {"STAPLER HEAVY DUTY", "EACH", 18.50}, {"LEVER ARCH FILE", "EACH", 2.45},
    {"LED BULB 9W E27", "EACH", 3.95}, {"EXTENSION LEAD 4 WAY", "EACH", 11.20},
    {"CABLE TIES 200MM", "PACK", 2.80}, {"MASKING TAPE 25MM", "ROLL", 1.65},
    {"HAND SANITISER 500ML", "BOTTLE", 4.90}, {"NITRILE GLOVES M", "BOX", 7.25},
    {"PAPER TOWELS", "CASE", 21.40}, {"BIN BAGS 80L", "ROLL", 5.60},
    {"COFFEE BEANS 1KG", "BAG", 16.75}, {"TEA BAGS 1100", "BOX", 19.99},
    {"MILK UHT 1L", "EACH", 1.15}, {"SUGAR SACHETS 1000", "BOX", 12.30},
    {"SCREWS 4X40 200", "BOX", 6.45}, {"WALL PLUGS BROWN 100", "PACK", 2.20},
    {"DRILL BIT SET HSS", "SET", 14.95}, {"SAFETY GOGGLES", "EACH", 4.10},
};
const QStringList kStatuses = {"OPEN", "PICKING", "SHIPPED", "INVOICED", "CLOSED"};

QVariant dateOrNull(const QDate &d) { return d.isValid() ? QVariant(d.toString(Qt::ISODate)) : QVariant(); }

} // namespace

namespace DemoDatabase {

void ensureFile(const QString &path)
{
    if (QFileInfo::exists(path))
        return;
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath()))
        throw RuntimeError(-2147467259, QStringLiteral("Cannot create the folder %1").arg(info.absolutePath()),
                           QStringLiteral("DemoDatabase"));
    // The connection never creates a database file on its own: an empty file is an empty database.
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw RuntimeError(-2147467259, QStringLiteral("Cannot create %1: %2").arg(path, file.errorString()),
                           QStringLiteral("DemoDatabase"));
}

void ensureFilled(Connection &cn)
{
    try {
        Recordset probe;
        probe.Open(QStringLiteral("SELECT order_no FROM order_lines WHERE 1 = 0"), &cn);
        return; // the last table made is there: the database was filled before
    } catch (const RuntimeError &) {
        // No tables yet.
    }
    try {
        createAndFill(cn);
    } catch (...) {
        try {
            cn.Execute(QStringLiteral("ROLLBACK"));
        } catch (const RuntimeError &) {
            // The failure may already have ended the transaction; the first error counts.
        }
        throw;
    }
}

void createAndFill(Connection &cn)
{
    QRandomGenerator rng(20261121);
    const auto pick = [&rng](const QStringList &list) { return list.at(int(rng.bounded(list.size()))); };
    const QDate today(2026, 11, 2);

    cn.Execute(QStringLiteral("BEGIN"));
    for (const char *sql : kSchema)
        cn.Execute(QString::fromLatin1(sql));
    // The customer browser lists customers in the order they were entered, by SQLite's rowid;
    // on PostgreSQL a numbered column of that name keeps the same order.
    if (cn.engine() == Connection::EnginePostgreSQL)
        cn.Execute(QStringLiteral("ALTER TABLE customers ADD COLUMN rowid SERIAL"));

    const int customerCount = 60;
    QStringList customers;
    for (int i = 1; i <= customerCount; ++i) {
        const QString code = QStringLiteral("C%1").arg(i, 4, 10, QLatin1Char('0'));
        customers << code;
        const QString name = kNameFirst.at((i * 7) % kNameFirst.size()) + QLatin1Char(' ')
                             + kNameSecond.at((i * 5) % kNameSecond.size());
        const QDate born = QDate(1950, 1, 1).addDays(rng.bounded(18000));
        const QDate start = QDate(2015, 1, 1).addDays(rng.bounded(4000));
        cn.Execute(QStringLiteral("INSERT INTO customers VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                   {code, name, pick(kCities),
                    i % 9 == 0 ? QVariant() : QVariant(QStringLiteral("0%1 %2").arg(1130 + i).arg(rng.bounded(100000, 999999))),
                    double(rng.bounded(10, 200)) * 250.0, int(rng.bounded(0, 4)) * 5,
                    i % 6 == 0 ? QVariant() : dateOrNull(born), dateOrNull(start), i % 11 != 0});
    }

    QStringList items;
    QList<double> prices;
    for (int i = 0; i < 80; ++i) {
        const ItemSeed &seed = kItems[i % (sizeof kItems / sizeof kItems[0])];
        const QString code = QStringLiteral("IT%1").arg(i + 1, 5, 10, QLatin1Char('0'));
        const int variant = i / int(sizeof kItems / sizeof kItems[0]);
        const QString description = variant == 0 ? QString::fromLatin1(seed.description)
                                                 : QStringLiteral("%1 (%2)").arg(QString::fromLatin1(seed.description)).arg(variant + 1);
        const double price = seed.price * (1.0 + 0.15 * variant);
        items << code;
        prices << qRound(price * 100) / 100.0;
        cn.Execute(QStringLiteral("INSERT INTO items VALUES (?, ?, ?, ?, ?, ?, ?)"),
                   {code, description, QString::fromLatin1(seed.unit), prices.last(),
                    int(rng.bounded(0, 900)), int(rng.bounded(5, 60)), i % 4 != 0});
    }

    for (int order = 1; order <= 150; ++order) {
        const int orderNo = 10000 + order;
        const QDate ordered = today.addDays(-qint64(rng.bounded(0, 400)));
        const QString status = pick(kStatuses);
        cn.Execute(QStringLiteral("INSERT INTO orders VALUES (?, ?, ?, ?, ?, ?, ?)"),
                   {orderNo, pick(customers), dateOrNull(ordered),
                    status == QLatin1String("OPEN") ? QVariant() : dateOrNull(ordered.addDays(rng.bounded(2, 15))),
                    status, int(rng.bounded(1, 4)), status == QLatin1String("CLOSED")});
        const int lines = int(rng.bounded(1, 7));
        for (int line = 1; line <= lines; ++line) {
            const int item = int(rng.bounded(items.size()));
            cn.Execute(QStringLiteral("INSERT INTO order_lines VALUES (?, ?, ?, ?, ?, ?, ?)"),
                       {orderNo, line, items.at(item), int(rng.bounded(1, 48)), prices.at(item),
                        line % 3 == 0 ? QVariant(2.5 * double(rng.bounded(1, 5))) : QVariant(),
                        dateOrNull(ordered.addDays(rng.bounded(3, 30)))});
        }
    }
    cn.Execute(QStringLiteral("COMMIT"));
}

} // namespace DemoDatabase
