// Hostile text in the print query form: quotes, comment markers, a second statement after ";",
// UNION, stacked DDL, very long text, control characters and non-ASCII, put into the range
// boxes and the criteria value, run through both report paths against SQLite and PostgreSQL.
// The tables never change, and the form reports what the database or the formula reader
// refused instead of failing.
#include "printformtestsupport.h"

using namespace PrintFormTest;

namespace {

QStringList corpus()
{
    return {
        QStringLiteral("x' OR '1'='1"),
        QStringLiteral("x'; DROP TABLE frmprint_guard; --"),
        QStringLiteral("x'); DELETE FROM frmprint_items; --"),
        QStringLiteral("x'; CREATE TABLE frmprint_evil (n INTEGER); --"),
        QStringLiteral("'; COMMIT; DROP TABLE frmprint_guard; --"),
        QStringLiteral("\\'; UPDATE frmprint_items SET qty = 0; --"),
        QStringLiteral("') UNION SELECT 'leak' --"),
        QStringLiteral("x' /* unterminated comment"),
        QStringLiteral("x' -- "),
        QStringLiteral("1; UPDATE frmprint_items SET qty = 0"),
        QStringLiteral("1000 OR nextval('frmprint_seq') > 0"),
        QStringLiteral("0 OR (SELECT 1 FROM frmprint_guard) = 1; INSERT INTO frmprint_guard VALUES (1)"),
        QString(5000, QLatin1Char('A')) + QStringLiteral("'; DROP TABLE frmprint_items; --"),
        QStringLiteral("a\x01\x02\tb\r\nc\x7f"),
        QStringLiteral("\u00dcn\u00efc\u00f8d\u00e9 \u540d\u524d \U0001F600'"),
        QStringLiteral("}{frmprint_items.name} = 'x' or {x.y"),
    };
}

} // namespace

class tst_frmprint_hostile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { ToolbarTest::failOnUnscriptedModals(); }
    void tablesNeverChange_data();
    void tablesNeverChange();
    void aWriteInsideTheStatementIsRefusedByTheDatabase();
};

void tst_frmprint_hostile::tablesNeverChange_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("into"); // from, to, criteria, or numeric (from on the quantity)
    for (const char *kind : {"D", "C"})
        for (const char *into : {"from", "to", "criteria", "numeric"})
            for (const char *engine : {"sqlite", "postgres"})
                QTest::addRow("%s: %s path: %s", engine, kind[0] == 'D' ? "data report" : "engine", into)
                    << QString::fromLatin1(engine) << QString::fromLatin1(kind) << QString::fromLatin1(into);
}

void tst_frmprint_hostile::tablesNeverChange()
{
    QFETCH(QString, engine);
    QFETCH(QString, kind);
    QFETCH(QString, into);
    Items items;
    const QString why = items.open(engine);
    QVERIFY2(why.isEmpty(), qPrintable(why));
    if (engine == QLatin1String("postgres")) {
        items.cn.Execute(QStringLiteral("DROP SEQUENCE IF EXISTS frmprint_seq"));
        items.cn.Execute(QStringLiteral("CREATE SEQUENCE frmprint_seq"));
    }
    // The sequence has been called once a statement has written through it.
    auto state = [&] {
        QString text = items.snapshot();
        if (engine == QLatin1String("postgres")) {
            Recordset sequence;
            sequence.Open(QStringLiteral("SELECT is_called FROM frmprint_seq"), &items.cn);
            text += sequence.Fields().Item(0).Value().toString();
        }
        return text;
    };
    const QString before = state();
    ConnectionSettings::instance().setDatabaseKind(2);

    for (const QString &value : corpus()) {
        Report report;
        report.kind = kind;
        report.selquery = QStringLiteral("SELECT name AS prntxt FROM ") + ItemsTable;
        report.rpttitle = items.dir.filePath(QStringLiteral("RPT") + ItemsTable);
        if (into == QLatin1String("criteria")) {
            report.criteria = QStringList{value, QStringLiteral("Hostile")};
            report.criteriaField = QStringLiteral("name");
        }
        QFile file(report.rpttitle + QStringLiteral(".rpt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral(R"({ "source": { "table": "%1" }, "columns": [ { "field": "name" } ] })")
                       .arg(ItemsTable)
                       .toUtf8());
        file.close();
        PrintingHost host(items, report);
        Run run;
        run.user = [&](QDialog *form) {
            FormInput input;
            input.groupOn = into == QLatin1String("numeric") ? 2 : 1;
            fill(form, input);
            // Pasted rather than typed: a line edit takes no control characters from the keyboard.
            const char *box = into == QLatin1String("to") ? "txtto" : "txtfrom";
            if (into != QLatin1String("criteria"))
                control<QLineEdit>(form, box)->setText(value);
            submit(form);
        };
        host.print();
        const QString what = value.left(60);
        QVERIFY2(!run.errors.isEmpty() || !run.boxes.isEmpty() || run.previews == 1, qPrintable(what));
        for (const QString &error : run.errors)
            QVERIFY2(!error.startsWith(QLatin1String("51:")), qPrintable(what + QStringLiteral(" -> ") + error));
        QVERIFY2(state() == before, qPrintable(what));
    }
}

// The statement runs in the database's own read-only mode: a function that writes, called from
// inside the filter, is refused by PostgreSQL itself.
void tst_frmprint_hostile::aWriteInsideTheStatementIsRefusedByTheDatabase()
{
    Items items;
    const QString why = items.open(QStringLiteral("postgres"));
    QVERIFY2(why.isEmpty(), qPrintable(why));
    items.cn.Execute(QStringLiteral("DROP SEQUENCE IF EXISTS frmprint_seq"));
    items.cn.Execute(QStringLiteral("CREATE SEQUENCE frmprint_seq"));
    ConnectionSettings::instance().setDatabaseKind(2);
    Report report;
    report.selquery = QStringLiteral("SELECT name AS prntxt FROM ") + ItemsTable;
    PrintingHost host(items, report);
    Run run;
    run.user = [&](QDialog *form) {
        fill(form, FormInput{2, QStringLiteral("1000 OR nextval('frmprint_seq') > 0"), QString(), 0, {}, {}, 0, {}});
        control<QLineEdit>(form, "txtfrom")->setText(QStringLiteral("1000 OR nextval('frmprint_seq') > 0"));
        pressOK(form);
        cancel(form);
    };
    host.print();
    QCOMPARE(run.errors.size(), 1);
    QVERIFY2(run.errors.first().contains(QLatin1String("read-only transaction")), qPrintable(run.errors.first()));
    Recordset sequence;
    sequence.Open(QStringLiteral("SELECT is_called FROM frmprint_seq"), &items.cn);
    QCOMPARE(sequence.Fields().Item(0).Value().toBool(), false);
}

QTEST_MAIN(tst_frmprint_hostile)
#include "tst_frmprint_hostile.moc"
