#include "shared/errornumber.h"

#include <PanelKestrin/hostform.h>
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
    QHash<int, QString> cells;
    bool refuseClose = false;

    int Count() const { return 3; }
    Q_INVOKABLE int Add(int a, int b) { return a + b; }
    Q_INVOKABLE int Bump(qint32 &row) { return ++row; }
    Q_INVOKABLE QString Repeat(const QString &s, qint16 n) { return s.repeated(n); }
    Q_INVOKABLE QString TextMatrix(int r, int c) const { return cells.value(r * 100 + c); }
    Q_INVOKABLE void setTextMatrix(int r, int c, const QString &v) { cells.insert(r * 100 + c, v); }
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
    Q_PROPERTY(int Top MEMBER Top)

public:
    int Top = 42;
};

class tst_hostform : public QObject
{
    Q_OBJECT

private slots:
    void callByName_data();
    void callByName();
    void twipsPerDevice();
    void frameGeometryAndUnload();
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
    QTest::newRow("void method gives Empty") << "Refresh1" << int(VbMethod) << none << QVariant() << 0;
    QTest::newRow("arguments converted") << "add" << int(VbMethod) << QVariantList{"2", 3.0} << QVariant(5) << 0;
    QTest::newRow("Empty argument is zero") << "Add" << int(VbMethod) << QVariantList{QVariant(), 4} << QVariant(4) << 0;
    QTest::newRow("by-reference parameter") << "bump" << int(VbMethod) << QVariantList{"4"} << QVariant(5) << 0;
    QTest::newRow("16-bit overflow") << "Repeat" << int(VbMethod) << QVariantList{"ab", 70000} << QVariant() << 6;
    QTest::newRow("text for a number") << "Add" << int(VbMethod) << QVariantList{"two", 3} << QVariant() << 13;
    QTest::newRow("Null for a string") << "Repeat" << int(VbMethod) << QVariantList{Null(), 1} << QVariant() << 94;
    QTest::newRow("too few arguments") << "Add" << int(VbMethod) << QVariantList{1} << QVariant() << 450;
    QTest::newRow("property as method") << "CAPTION" << int(VbMethod) << none << QVariant("Orders") << 0;
    // An assignment reads back; an indexed property is assigned through its setter, value last.
    QTest::newRow("property assigned") << "caption" << int(VbLet) << QVariantList{"Customers"} << QVariant() << 0;
    QTest::newRow("indexed assignment") << "textmatrix" << int(VbLet) << QVariantList{2, 3, "x"} << QVariant() << 0;
    QTest::newRow("read-only property") << "Count" << int(VbLet) << QVariantList{5} << QVariant() << 383;
    QTest::newRow("missing member") << "refresh2" << int(VbMethod) << none << QVariant() << 438;
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
    QVariant got;
    const Caught caught = capture([&] { got = CallByName(&form, name, CallType(call), args); });
    QCOMPARE(caught.number, error);
    QCOMPARE(got, result);
    if (call == VbLet && !error)
        QCOMPARE(CallByName(&form, name, VbGet, args.mid(0, args.size() - 1)), args.last());
    if (error == 438) // the message says what was missing where
        QVERIFY(caught.description.contains(name) && caught.description.contains(QLatin1String("OrderForm")));
    if (error == 9) // a member's own error reaches the caller unchanged
        QCOMPARE(caught.description + caught.source, QStringLiteral("row 7Grid"));
}

void tst_hostform::twipsPerDevice()
{
    // Without a device, the screen's: the offscreen screen has 96 DPI, 15 twips per pixel.
    QCOMPARE(PixelsToTwipsX(640, nullptr), 9600);
    QCOMPARE(TwipsToPixelsY(285, nullptr), 19); // one grid row
    QCOMPARE(TwipsToPixelsX(7, nullptr), 0);    // rounded to the nearest pixel
    QCOMPARE(TwipsToPixelsX(8, nullptr), 1);
    QImage page(10, 10, QImage::Format_RGB32); // a device with its own resolution per axis
    page.setDotsPerMeterX(qRound(192 / 0.0254));
    page.setDotsPerMeterY(qRound(72 / 0.0254));
    QCOMPARE(PixelsToTwipsX(192, &page), 1440);
    QCOMPARE(TwipsToPixelsY(1440, &page), 72);
}

void tst_hostform::frameGeometryAndUnload()
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

    // Unloading runs the form's own close handling, which may refuse.
    form.refuseClose = true;
    QVERIFY(!UnloadForm(&form));
    QVERIFY(form.isVisible());
    form.refuseClose = false;
    QVERIFY(UnloadForm(&form));
    QVERIFY(!form.isVisible());
}

QTEST_MAIN(tst_hostform)
#include "tst_hostform.moc"
