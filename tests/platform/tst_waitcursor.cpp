#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/waitcursor.h>

#include <QCursor>
#include <QtTest>

using namespace PanelKestrin;

static int overrideShape()
{
    const QCursor *cursor = QGuiApplication::overrideCursor();
    return cursor ? int(cursor->shape()) : -1;
}

class tst_waitcursor : public QObject
{
    Q_OBJECT

private slots:
    void restoredOnEveryPath();
    void mousePointer_data();
    void mousePointer();
};

void tst_waitcursor::restoredOnEveryPath()
{
    QCOMPARE(overrideShape(), -1);
    try {
        WaitCursor outer;
        QCOMPARE(overrideShape(), int(Qt::WaitCursor));
        {
            WaitCursor inner;
        }
        QCOMPARE(overrideShape(), int(Qt::WaitCursor)); // the outer guard still holds it
        throw RuntimeError(ErrTypeMismatch);
    } catch (const RuntimeError &) {
    }
    QCOMPARE(overrideShape(), -1);
}

void tst_waitcursor::mousePointer_data()
{
    QTest::addColumn<QList<int>>("pointers");
    QTest::addColumn<int>("shape");
    QTest::newRow("hourglass") << QList<int>{11} << int(Qt::WaitCursor);
    QTest::newRow("set twice, one reset") << QList<int>{11, 11, 0} << -1;
    QTest::newRow("changed shape, one reset") << QList<int>{11, 3, 0} << -1;
    QTest::newRow("I-beam") << QList<int>{11, 3} << int(Qt::IBeamCursor);
}

void tst_waitcursor::mousePointer()
{
    QFETCH(QList<int>, pointers);
    QFETCH(int, shape);
    for (int p : pointers)
        setMousePointer(p);
    QCOMPARE(MousePointer(), pointers.last());
    QCOMPARE(overrideShape(), shape);

    try {
        setMousePointer(16);
        QFAIL("no error raised");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), 380);
    }
    QCOMPARE(MousePointer(), pointers.last());

    setMousePointer(vbDefault);
    QCOMPARE(overrideShape(), -1);
}

QTEST_MAIN(tst_waitcursor)
#include "tst_waitcursor.moc"
