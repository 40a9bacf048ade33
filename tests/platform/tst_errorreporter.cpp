#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/msgbox.h>

#include <QtTest>
#include <stdexcept>

using namespace PanelKestrin;

using Body = std::function<void()>;
Q_DECLARE_METATYPE(Body)

class tst_errorreporter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void guardEventCatchesEveryKind_data();
    void guardEventCatchesEveryKind();
    void failingReporterDoesNotEscape();
    void defaultReportIsACriticalMessageBox();

private:
    QList<RuntimeError> reported;
};

void tst_errorreporter::init()
{
    reported.clear();
    Err().Clear();
    setErrorReporter([this](const RuntimeError &e) { reported.append(e); });
}

void tst_errorreporter::cleanup()
{
    setErrorReporter({});
    setMessageBoxHandler({});
}

void tst_errorreporter::guardEventCatchesEveryKind_data()
{
    QTest::addColumn<Body>("body");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("source");
    QTest::newRow("completes") << Body([] {}) << 0 << "" << "";
    QTest::newRow("run-time error keeps its source")
        << Body([] { throw RuntimeError(381, QStringLiteral("Invalid property array index"), QStringLiteral("gridcontrol")); })
        << 381 << "Invalid property array index" << "gridcontrol";
    QTest::newRow("run-time error without source")
        << Body([] { throw RuntimeError(ErrObjectNotSet); }) << 91
        << "Object variable or With block variable not set" << "Command1_Click";
    QTest::newRow("standard exception")
        << Body([] { throw std::out_of_range("vector index 12"); }) << 51
        << "Internal error in Command1_Click: vector index 12" << "Command1_Click";
    QTest::newRow("anything else") << Body([] { throw 42; }) << 51
                                   << "Internal error in Command1_Click: unknown exception"
                                   << "Command1_Click";
}

void tst_errorreporter::guardEventCatchesEveryKind()
{
    QFETCH(Body, body);
    QFETCH(int, number);
    QFETCH(QString, description);
    QFETCH(QString, source);
    const bool completed = guardEvent(QStringLiteral("Command1_Click"), body);
    QCOMPARE(completed, number == 0);
    QCOMPARE(reported.size(), number == 0 ? 0 : 1);
    if (number) {
        QCOMPARE(reported.first().Number(), number);
        QCOMPARE(reported.first().Description(), description);
        QCOMPARE(reported.first().Source(), source);
    }
    // The caught error is also the pending error.
    QCOMPARE(Err().Number, number);
    QCOMPARE(Err().Description, description);
}

void tst_errorreporter::failingReporterDoesNotEscape()
{
    setErrorReporter([](const RuntimeError &) { throw std::runtime_error("reporter broke"); });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Run-time error 13 not reported")));
    QVERIFY(!guardEvent(QStringLiteral("KeyPress"), [] { throw RuntimeError(ErrTypeMismatch); }));
    QCOMPARE(Err().Number, 13);
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
}

QTEST_MAIN(tst_errorreporter)
#include "tst_errorreporter.moc"
