#include "shared/errornumber.h"

#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/msgbox.h>

#include <QtTest>
#include <stdexcept>

using namespace PanelKestrin;

class tst_errorreporter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void guardEventCatchesEveryKind_data();
    void guardEventCatchesEveryKind();
    void defaultReportIsACriticalMessageBox();

private:
    QStringList reported; // "number|description|source"
};

void tst_errorreporter::init()
{
    reported.clear();
    Err().Clear();
    setErrorReporter([this](const RuntimeError &e) {
        reported << QStringLiteral("%1|%2|%3").arg(e.Number()).arg(e.Description(), e.Source());
    });
}

void tst_errorreporter::cleanup()
{
    setErrorReporter({});
    setMessageBoxHandler({});
}

void tst_errorreporter::guardEventCatchesEveryKind_data()
{
    QTest::addColumn<Call>("body");
    QTest::addColumn<QString>("report"); // empty when the body completes
    QTest::newRow("completes") << Call([] {}) << "";
    QTest::newRow("run-time error keeps its source")
        << Call([] { throw RuntimeError(381, QStringLiteral("Invalid property array index"), QStringLiteral("gridcontrol")); })
        << "381|Invalid property array index|gridcontrol";
    QTest::newRow("run-time error without source") << Call([] { throw RuntimeError(ErrObjectNotSet); })
                                                   << "91|Object variable or With block variable not set|Command1_Click";
    QTest::newRow("standard exception") << Call([] { throw std::out_of_range("vector index 12"); })
                                        << "51|Internal error in Command1_Click: vector index 12|Command1_Click";
    QTest::newRow("anything else") << Call([] { throw 42; })
                                   << "51|Internal error in Command1_Click: unknown exception|Command1_Click";
}

void tst_errorreporter::guardEventCatchesEveryKind()
{
    QFETCH(Call, body);
    QFETCH(QString, report);
    QCOMPARE(guardEvent(QStringLiteral("Command1_Click"), body), report.isEmpty());
    QCOMPARE(reported, report.isEmpty() ? QStringList() : QStringList{report});
    // The caught error is also the pending error.
    QCOMPARE(Err().Number, report.section(QLatin1Char('|'), 0, 0).toInt());
    QCOMPARE(Err().Description, report.section(QLatin1Char('|'), 1, 1));
}

void tst_errorreporter::defaultReportIsACriticalMessageBox()
{
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Order Entry"));
    setErrorReporter({});
    QStringList boxes;
    setMessageBoxHandler([&](const QString &prompt, int style, const QString &title) {
        boxes << QStringLiteral("%1|%2|%3").arg(prompt).arg(style).arg(title);
        return int(vbOK);
    });
    ReportError(RuntimeError(ErrSubscriptOutOfRange, QString(), QStringLiteral("TrnControl")));
    ReportError(RuntimeError(ErrTypeMismatch)); // no source: the application's name
    QCOMPARE(boxes, QStringList({QStringLiteral("Run-time error '9':\n\nSubscript out of range|16|TrnControl"),
                                 QStringLiteral("Run-time error '13':\n\nType mismatch|16|Order Entry")}));

    // A report that fails itself does not escape the event either; only the log is left to tell.
    setMessageBoxHandler([](const QString &, int, const QString &) -> int { throw std::runtime_error("no box"); });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Run-time error 13 not reported")));
    QVERIFY(!guardEvent(QStringLiteral("KeyPress"), [] { throw RuntimeError(ErrTypeMismatch); }));
    QCOMPARE(Err().Number, 13);
}

QTEST_MAIN(tst_errorreporter)
#include "tst_errorreporter.moc"
