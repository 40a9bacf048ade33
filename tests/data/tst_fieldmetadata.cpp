#include "datatestsupport.h"

#include <PanelKestrin/recordset.h>
#include <PanelKestrin/variant.h>

using namespace PanelKestrin;

// What Field reports for a column: type, defined size, precision, numeric scale.
struct Shape {
    int type, size, precision, scale;
};
Q_DECLARE_METATYPE(Shape)

class tst_FieldMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void declaredTypes_data();
    void declaredTypes();
    void nullability_data();
    void nullability();
    void computedColumns_data();
    void computedColumns();

private:
    QTemporaryDir m_dir;
};

// A column of each declaration: its shape, and a value bound as a parameter and read back.
void tst_FieldMetadata::declaredTypes_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("declaration");
    QTest::addColumn<Shape>("shape");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QVariant>("read");
    const int na = 255, unbounded = 2147483647;
    // One expectation for both engines: the same declaration answers alike.
    auto both = [](const char *declaration, Shape shape, const QVariant &stored, const QVariant &read) {
        FOR_EACH_ENGINE(declaration) << QString::fromLatin1(declaration) << shape << stored << read;
    };
    auto sqlite = [](const char *declaration, Shape shape, const QVariant &value) {
        QTest::addRow("sqlite: %s", declaration) << "sqlite" << QString::fromLatin1(declaration) << shape << value << value;
    };
    const QDateTime stamp(QDate(2024, 2, 29), QTime(13, 45, 10));
    both("VARCHAR(30)", {200, 30, na, na}, QStringLiteral("Ünïcode"), QStringLiteral("Ünïcode"));
    both("NUMERIC(10,2)", {131, 19, 10, 2}, 12.5, 12.5);
    both("NUMERIC(7)", {131, 19, 7, 0}, 12, 12.0);
    both("DATE", {7, 8, na, na}, QDate(2024, 2, 29), QDate(2024, 2, 29));
    both("DATE NULL", {7, 8, na, na}, Null(), Null());
    both("TIMESTAMP", {135, 16, na, na}, stamp, stamp);
    both("INTEGER", {3, 4, 10, 0}, 42, 42);
    both("SMALLINT", {2, 2, 5, 0}, -7, -7);
    both("BIGINT", {20, 8, 19, 0}, qlonglong(9000000000), qlonglong(9000000000));
    both("DOUBLE PRECISION", {5, 8, 15, na}, 0.25, 0.25);
    both("FLOAT8", {5, 8, 15, na}, Null(), Null());
    both("FLOAT4", {4, 4, 7, na}, 0.5, 0.5);
    both("BOOLEAN", {11, 2, na, na}, false, false);
    both("BOOLEAN DEFAULT FALSE", {11, 2, na, na}, true, true);
    both("CHAR(5)", {129, 5, na, na}, Null(), Null());
    both("TEXT", {201, unbounded, na, na}, QString(), QString(QLatin1String(""))); // empty text is not NULL
    both("VARCHAR", {201, unbounded, na, na}, Null(), Null());
    // REAL is double precision in SQLite, single in PostgreSQL; DATETIME and DOUBLE are SQLite's.
    sqlite("REAL", {5, 8, 15, na}, 0.25);
    QTest::newRow("postgres: REAL") << "postgres" << "REAL" << Shape{4, 4, 7, na} << QVariant(0.5) << QVariant(0.5);
    sqlite("DATETIME", {7, 8, na, na}, stamp);
    sqlite("DOUBLE", {5, 8, 15, na}, Null());
    QTest::newRow("sqlite: DATETIME, date only") << "sqlite" << "DATETIME" << Shape{7, 8, na, na}
                                                 << QVariant(QDate(2024, 1, 2)) << QVariant(QDate(2024, 1, 2));
}

void tst_FieldMetadata::declaredTypes()
{
    QFETCH(QString, engine);
    QFETCH(QString, declaration);
    QFETCH(Shape, shape);
    QFETCH(QVariant, stored);
    QFETCH(QVariant, read);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("meta_types"), QStringLiteral("c ") + declaration);
    cn.Execute(QStringLiteral("INSERT INTO meta_types VALUES (?)"), {stored});
    Recordset rs;
    rs.Open(QStringLiteral("meta_types"), &cn);
    const Field f = rs.Fields().Item(QStringLiteral("c"));
    QCOMPARE(f.Type(), shape.type);
    QCOMPARE(f.DefinedSize(), shape.size);
    QCOMPARE(f.Precision(), shape.precision);
    QCOMPARE(f.NumericScale(), shape.scale);
    QCOMPARE(f.Attributes(), 32);
    QCOMPARE(f.Value().metaType(), read.metaType());
    QCOMPARE(f.Value(), read);
    QCOMPARE(rs.GetRows(-1, 1)(0, 0), read); // GetRows hands out the same values
}

void tst_FieldMetadata::nullability_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("columns");
    QTest::addColumn<QList<int>>("attributes"); // of the columns a, b, c
    FOR_EACH_ENGINE("NOT NULL and nullable") << "a INTEGER NOT NULL, b VARCHAR(5), c DATE NOT NULL"
                                             << QList<int>{0, 32, 0};
    FOR_EACH_ENGINE("primary key counts as NOT NULL") << "a INTEGER PRIMARY KEY, b TEXT, c TEXT"
                                                      << QList<int>{0, 32, 32};
    FOR_EACH_ENGINE("composite key") << "a TEXT, b TEXT, c TEXT, PRIMARY KEY (a, c)" << QList<int>{0, 32, 0};
}

void tst_FieldMetadata::nullability()
{
    QFETCH(QString, engine);
    QFETCH(QString, columns);
    QFETCH(QList<int>, attributes);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("meta_nulls"), columns);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT c, b, a FROM meta_nulls"), &cn); // not in table order
    QCOMPARE((QList<int>{rs.Fields().Item(QStringLiteral("a")).Attributes(),
                         rs.Fields().Item(QStringLiteral("b")).Attributes(),
                         rs.Fields().Item(QStringLiteral("c")).Attributes()}),
             attributes);
}

void tst_FieldMetadata::computedColumns_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("expression");
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    FOR_EACH_ENGINE("integer arithmetic") << "qty + 1" << 3 << QVariant(3);
    FOR_EACH_ENGINE("text concatenation") << "name || '!'" << 201 << QVariant(QStringLiteral("pen!"));
    FOR_EACH_ENGINE("renamed column keeps its table type") << "name" << 200 << QVariant(QStringLiteral("pen"));
    // SQLite types an expression by its value's storage class, PostgreSQL by the result type.
    QTest::newRow("sqlite: numeric arithmetic") << "sqlite" << "price * 2" << 5 << QVariant(5.0);
    QTest::newRow("postgres: numeric arithmetic") << "postgres" << "price * 2" << 131 << QVariant(5.0);
    QTest::newRow("sqlite: count") << "sqlite" << "(SELECT COUNT(*) FROM meta_calc)" << 3 << QVariant(1);
    QTest::newRow("postgres: count") << "postgres" << "(SELECT COUNT(*) FROM meta_calc)" << 20
                                     << QVariant(qlonglong(1));
}

void tst_FieldMetadata::computedColumns()
{
    QFETCH(QString, engine);
    QFETCH(QString, expression);
    QFETCH(int, type);
    QFETCH(QVariant, value);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("meta_calc"),
                            QStringLiteral("name VARCHAR(10) NOT NULL, qty INTEGER NOT NULL, price NUMERIC(8,2) NOT NULL"));
    cn.Execute(QStringLiteral("INSERT INTO meta_calc VALUES ('pen', 2, 2.5)"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT %1 AS x FROM meta_calc").arg(expression), &cn);
    const Field f = rs.Fields().Item(0);
    QCOMPARE(f.Name(), QStringLiteral("x"));
    QCOMPARE(f.Type(), type);
    QCOMPARE(f.Attributes(), expression == QLatin1String("name") ? 0 : 32);
    QCOMPARE(f.Value().metaType(), value.metaType());
    QCOMPARE(f.Value(), value);
}

QTEST_GUILESS_MAIN(tst_FieldMetadata)
#include "tst_fieldmetadata.moc"
