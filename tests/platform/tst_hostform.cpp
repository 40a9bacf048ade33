#include <PanelKestrin/hostform.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/twips.h>
#include <PanelKestrin/variant.h>

#include <QCloseEvent>
#include <QImage>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QtTest>

using namespace PanelKestrin;

// A host form offering the members the toolbars call by name, and a few more shapes of member.
class OrderForm : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Caption MEMBER Caption)
    Q_PROPERTY(int Count READ Count)

public:
    QString Caption = QStringLiteral("Orders");
    QString cells;
    bool refuseClose = false;

    int Count() const { return 3; }
    Q_INVOKABLE int Add(int a, int b) { return a + b; }
    Q_INVOKABLE int Bump(qint32 &row) { return ++row; }
    Q_INVOKABLE QString Repeat(const QString &s, qint16 n) { return s.repeated(n); }
    Q_INVOKABLE QString TextMatrix(int r, int c) const { return QStringLiteral("%1,%2").arg(r).arg(c); }
    Q_INVOKABLE void setTextMatrix(int r, int c, const QString &v) { cells = QStringLiteral("%1,%2=%3").arg(r).arg(c).arg(v); }
    Q_INVOKABLE void Fail() { throw RuntimeError(ErrSubscriptOutOfRange, QStringLiteral("row 7"), QStringLiteral("Grid")); }

public slots:
    bool Validatefields() { return true; }
    void refresh1() {}

protected:
    void closeEvent(QCloseEvent *e) override { e->setAccepted(!refuseClose); }
};

// Declares its own Top: late binding finds it instead of the frame position.
class PlacedPanel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int Top READ Top)

public:
    int Top() const { return 42; }
};

class tst_hostform : public QObject
{
    Q_OBJECT

private slots:
    void callByName_data();
    void callByName();
    void assignments();
    void twipsPerDevice();
    void frameGeometryInTwips();
    void unloadForm();
};

void tst_hostform::callByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("call");
    QTest::addColumn<QVariantList>("args");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<int>("error");
    const QVariantList none;
    QTest::newRow("slot, other case") << "VALIDATEFIELDS" << int(VbMethod) << none << QVariant(true) << 0;
    QTest::newRow("function read as property") << "validatefields" << int(VbGet) << none << QVariant(true) << 0;
    QTest::newRow("void method gives Empty") << "Refresh1" << int(VbMethod) << none << QVariant() << 0;
    QTest::newRow("arguments converted") << "add" << int(VbMethod) << QVariantList{"2", 3.0} << QVariant(5) << 0;
    QTest::newRow("Empty argument is zero") << "Add" << int(VbMethod) << QVariantList{QVariant(), 4} << QVariant(4) << 0;
    QTest::newRow("by-reference parameter") << "bump" << int(VbMethod) << QVariantList{"4"} << QVariant(5) << 0;
    QTest::newRow("16-bit overflow") << "Repeat" << int(VbMethod) << QVariantList{"ab", 70000} << QVariant() << 6;
    QTest::newRow("text for a number") << "Add" << int(VbMethod) << QVariantList{"two", 3} << QVariant() << 13;
    QTest::newRow("Null for a string") << "Repeat" << int(VbMethod) << QVariantList{Null(), 1} << QVariant() << 94;
    QTest::newRow("too few arguments") << "Add" << int(VbMethod) << QVariantList{1} << QVariant() << 450;
    QTest::newRow("property") << "caption" << int(VbGet) << none << QVariant("Orders") << 0;
    QTest::newRow("property as method") << "CAPTION" << int(VbMethod) << none << QVariant("Orders") << 0;
    QTest::newRow("indexed read") << "textmatrix" << int(VbGet) << QVariantList{1, 2} << QVariant("1,2") << 0;
    QTest::newRow("read-only property") << "Count" << int(VbLet) << QVariantList{5} << QVariant() << 383;
    QTest::newRow("missing member") << "refresh2" << int(VbMethod) << none << QVariant() << 438;
    QTest::newRow("signals are not members") << "destroyed" << int(VbMethod) << none << QVariant() << 438;
    QTest::newRow("member's own error") << "Fail" << int(VbMethod) << none << QVariant() << 9;
}

void tst_hostform::callByName()
{
    QFETCH(QString, name);
    QFETCH(int, call);
    QFETCH(QVariantList, args);
    QFETCH(QVariant, result);
    QFETCH(int, error);
    OrderForm form;
    try {
        QCOMPARE(CallByName(&form, name, CallType(call), args), result);
        QCOMPARE(0, error);
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), error);
        if (error == 438) // the message says what was missing where
            QVERIFY(e.Description().contains(name) && e.Description().contains(QLatin1String("OrderForm")));
        if (error == 9) // a member's own error reaches the caller unchanged
            QCOMPARE(e.Description() + e.Source(), QStringLiteral("row 7Grid"));
    }
}

void tst_hostform::assignments()
{
    OrderForm form;
    CallByName(&form, QStringLiteral("CAPTION"), VbLet, {QStringLiteral("Customers")});
    QCOMPARE(form.Caption, QStringLiteral("Customers"));
    // An indexed property is assigned through its setter, value last.
    CallByName(&form, QStringLiteral("TextMatrix"), VbLet, {2, 3, QStringLiteral("x")});
    QCOMPARE(form.cells, QStringLiteral("2,3=x"));
}

void tst_hostform::twipsPerDevice()
{
    QWidget widget; // the offscreen screen has 96 DPI: 15 twips per pixel
    for (const QPaintDevice *device : {static_cast<QPaintDevice *>(nullptr), static_cast<QPaintDevice *>(&widget)}) {
        QCOMPARE(PixelsToTwipsX(640, device), 9600);
        QCOMPARE(PixelsToTwipsY(-4, device), -60);
        QCOMPARE(TwipsToPixelsY(285, device), 19); // one grid row
        QCOMPARE(TwipsToPixelsX(7, device), 0);    // rounded to the nearest pixel
        QCOMPARE(TwipsToPixelsX(8, device), 1);
    }
    QImage page(10, 10, QImage::Format_RGB32); // a device with its own resolution per axis
    page.setDotsPerMeterX(qRound(192 / 0.0254));
    page.setDotsPerMeterY(qRound(72 / 0.0254));
    QCOMPARE(TwipsPerPixelX(&page), 7.5);
    QCOMPARE(TwipsPerPixelY(&page), 20.0);
    QCOMPARE(PixelsToTwipsX(192, &page), 1440);
    QCOMPARE(TwipsToPixelsY(1440, &page), 72);
}

void tst_hostform::frameGeometryInTwips()
{
    OrderForm form;
    auto *control = new QLineEdit;
    (new QVBoxLayout(&form))->addWidget(control);
    form.setGeometry(40, 60, 300, 200);
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QCOMPARE(HostForm(control), &form);

    const QRect frame = form.frameGeometry(); // 15 twips per pixel at the offscreen 96 DPI
    QCOMPARE(CallByName(HostForm(control), QStringLiteral("Left"), VbGet), QVariant(frame.x() * 15));
    QCOMPARE(CallByName(&form, QStringLiteral("top"), VbGet), QVariant(frame.y() * 15));
    QCOMPARE(CallByName(&form, QStringLiteral("Width"), VbGet), QVariant(frame.width() * 15));

    // Placing a form in twips, as the print form is put 350 twips below its host.
    CallByName(&form, QStringLiteral("Top"), VbLet, {CallByName(&form, QStringLiteral("Top"), VbGet).toInt() + 1500});
    CallByName(&form, QStringLiteral("Width"), VbLet, {QStringLiteral("3000")});
    QTRY_COMPARE(form.frameGeometry().y(), frame.y() + 100);
    QCOMPARE(form.frameGeometry().width(), 200);

    PlacedPanel panel;
    QCOMPARE(CallByName(&panel, QStringLiteral("top"), VbGet), QVariant(42));
}

void tst_hostform::unloadForm()
{
    for (bool refuse : {false, true}) {
        OrderForm form;
        form.refuseClose = refuse;
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QCOMPARE(UnloadForm(&form), !refuse);
        QCOMPARE(form.isVisible(), refuse);
    }
}

QTEST_MAIN(tst_hostform)
#include "tst_hostform.moc"
