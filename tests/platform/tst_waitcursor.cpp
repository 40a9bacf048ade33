#include "shared/errornumber.h"

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

// The pointer a host sets holds one entry of the cursor stack however often it is changed.
void tst_waitcursor::mousePointer()
{
    setMousePointer(vbHourglass);
    setMousePointer(vbHourglass);
    QCOMPARE(overrideShape(), int(Qt::WaitCursor));
    setMousePointer(vbDefault);
    QCOMPARE(overrideShape(), -1);

    setMousePointer(vbHourglass);
    setMousePointer(vbIbeam);
    QCOMPARE(overrideShape(), int(Qt::IBeamCursor));
    QCOMPARE(capture([] { setMousePointer(16); }).number, 380);
    QCOMPARE(MousePointer(), int(vbIbeam)); // a refused pointer changes nothing
    setMousePointer(vbDefault);
    QCOMPARE(MousePointer(), int(vbDefault));
    QCOMPARE(overrideShape(), -1);
}

QTEST_MAIN(tst_waitcursor)
#include "tst_waitcursor.moc"
