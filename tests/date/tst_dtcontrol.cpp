#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/dtpicker.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/variant.h>

#include "regionaltestsupport.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QFile>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QtTest>

using namespace PanelKestrin;

namespace {

const QString kInternational = QStringLiteral("\\Control Panel\\International");
const QDate kEmptyDate(1899, 12, 30);

// Stores the user's date separator; a null string leaves none stored.
void storeSeparator(const QString &separator)
{
    if (separator.isNull())
        DeleteRegValue(HKEY_CURRENT_USER, kInternational, QStringLiteral("sDate"));
    else
        SetRegValue(HKEY_CURRENT_USER, kInternational, QStringLiteral("sDate"), separator);
}

// The number of the run-time error a call raises, 0 for none.
template <typename F>
int errorOf(F &&call)
{
    try {
        call();
    } catch (const RuntimeError &e) {
        return e.Number();
    }
    return 0;
}

QTestEventList typing(const QString &digits)
{
    QTestEventList events;
    events.addKeyClicks(digits);
    return events;
}

// A shown, active form: an edit, a date box made under the given separator, another edit;
// the focus in the mask. Collects the key codes MaskKeyDown hands out.
struct Form
{
    QWidget window;
    QLineEdit *before;
    DTControl *date;
    QLineEdit *after;
    MaskEdBox *mask;
    DTPicker *picker;
    QList<int> raised;
    int validateRaised = 0;

    explicit Form(const QString &separator)
    {
        storeSeparator(separator);
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(before = new QLineEdit(&window));
        layout->addWidget(date = new DTControl(&window));
        layout->addWidget(after = new QLineEdit(&window));
        mask = date->findChild<MaskEdBox *>(QStringLiteral("MaskEdBox1"));
        picker = date->findChild<DTPicker *>(QStringLiteral("DTPicker1"));
        QObject::connect(date, &DTControl::MaskKeyDown, [this](qint16 &KeyCode, qint16 &) { raised << KeyCode; });
        QObject::connect(date, &DTControl::Validatevalue, [this](bool &) { ++validateRaised; });
        window.show();
        window.activateWindow();
        date->setFocus();
    }
    bool ready() { return mask && picker && QTest::qWaitForWindowActive(&window) && mask->hasFocus(); }
    QString focus() const
    {
        // Keys sent by the control are delivered one per pass of the event loop.
        for (int i = 0; i < 4; ++i)
            QCoreApplication::processEvents();
        const QWidget *w = QApplication::focusWidget();
        return w == mask ? QStringLiteral("mask") : w == before ? QStringLiteral("before")
             : w == after ? QStringLiteral("after") : QStringLiteral("elsewhere");
    }
};

} // namespace

class tst_dtcontrol : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { QFile::remove(RegistryStoreFileName()); messages.clear(); reported.clear(); }
    void separator_data();
    void separator();
    void typedDates_data();
    void typedDates();
    void keyRules_data();
    void keyRules();
    void leaving_data();
    void leaving();
    void value_data();
    void value();
    void orderIsNotTheRegionalOne_data();
    void orderIsNotTheRegionalOne();
    void dateFormats_data();
    void dateFormats();
    void calendar();

private:
    QStringList messages;
    QList<int> reported;
};

void tst_dtcontrol::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true); // never the real user's settings
    setMessageBoxHandler([this](const QString &prompt, int style, const QString &) {
        messages << QStringLiteral("%1|%2").arg(prompt).arg(style);
        return int(vbOK);
    });
    setErrorReporter([this](const RuntimeError &e) { reported << e.Number(); });
}

void tst_dtcontrol::separator_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("mask");

    const QLocale german(QLocale::German, QLocale::Germany), english(QLocale::English, QLocale::UnitedStates);
    QTest::newRow("none stored: the locale's, /") << QString() << english << "##/##/####";
    QTest::newRow("none stored: the locale's, .") << QString() << german << "##.##.####";
    QTest::newRow("stored empty") << "" << german << "##/##/####";
    QTest::newRow("stored -") << "-" << german << "##-##-####";
    QTest::newRow("stored digit unusable") << "1" << german << "##/##/####";
}

void tst_dtcontrol::separator()
{
    QFETCH(QString, stored);
    QFETCH(QLocale, locale);
    QFETCH(QString, mask);
    const QLocale saved;
    QLocale::setDefault(locale);
    storeSeparator(stored);
    DTControl date;
    QLocale::setDefault(saved);
    const MaskEdBox *box = date.findChild<MaskEdBox *>(QStringLiteral("MaskEdBox1"));
    QCOMPARE(box->Mask(), mask);
    date.setvalue(kEmptyDate);
    QCOMPARE(box->Text(), QString(mask).replace(QLatin1Char('#'), QLatin1Char('_')));
    QCOMPARE(date.value(), kEmptyDate);
}

void tst_dtcontrol::typedDates_data()
{
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("order"); // dDateFormat
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("caret");
    QTest::addColumn<QDate>("value"); // invalid: reading it raises error 5

    const QDate none;
    QTest::newRow("day first") << "/" << "" << typing("25122005") << "25/12/2005" << true << 10 << QDate(2005, 12, 25);
    QTest::newRow("leap year") << "-" << "dd/mm/yyyy" << typing("29022004") << "29-02-2004" << true << 10 << QDate(2004, 2, 29);
    QTest::newRow("1900 counts as leap") << "/" << "" << typing("29021900") << "29/02/1900" << true << 10 << none;
    QTest::newRow("29 February 2005") << "." << "" << typing("29022005") << "29.02.2005" << false << 0 << none;
    QTest::newRow("30 February 2004") << "/" << "" << typing("30022004") << "30/02/2004" << false << 0 << none;
    QTest::newRow("day 0 passes") << "." << "" << typing("00052005") << "00.05.2005" << true << 10 << none;
    QTest::newRow("month 13") << "/" << "" << typing("12132005") << "12/13/2005" << false << 3 << none;
    QTest::newRow("month first") << "-" << "mm/dd/yyyy" << typing("12252005") << "12-25-2005" << true << 10 << QDate(2005, 12, 25);
    QTest::newRow("month first, month 25") << "." << "MM/DD/YYYY" << typing("25122005") << "25.12.2005" << false << 3 << none;
    QTest::newRow("incomplete") << "-" << "" << typing("3112") << "31-12-____" << true << 6 << kEmptyDate;
    QTest::newRow("day alone: month 0") << "/" << "" << typing("1") << "1_/__/____" << false << 3 << kEmptyDate;
}

void tst_dtcontrol::typedDates()
{
    QFETCH(QString, separator);
    QFETCH(QString, order);
    QFETCH(QTestEventList, keys);
    QFETCH(QDate, value);
    Form form(separator);
    QVERIFY(form.ready());
    form.date->setdDateFormat(order);
    keys.simulate(form.mask);
    QTEST(form.mask->Text(), "text");
    QTEST(form.date->ValidDaysOfMonth(), "valid");
    QTEST(form.mask->SelStart(), "caret");
    if (value.isValid())
        QCOMPARE(form.date->value(), value);
    else
        QCOMPARE(errorOf([&] { form.date->value(); }), int(ErrInvalidProcedureCall));
    QCOMPARE(form.focus(), QStringLiteral("mask"));
}

void tst_dtcontrol::keyRules_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("raised"); // MaskKeyDown's KeyCode, in order
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("caret"); // -1: not checked
    QTest::addColumn<int>("reported");

    // The range is 1 January 2000 to 31 December 2030.
    const int shift = Qt::ShiftModifier;
    QTest::newRow("Tab in range") << "15062010" << int(Qt::Key_Tab) << 0 << "9" << "after" << -1 << 0;
    QTest::newRow("Shift+Tab in range") << "15062010" << int(Qt::Key_Backtab) << shift << "16,9" << "before" << -1 << 0;
    QTest::newRow("Enter in range") << "15062010" << int(Qt::Key_Return) << 0 << "13" << "mask" << -1 << 0;
    QTest::newRow("Up in range") << "15062010" << int(Qt::Key_Up) << 0 << "38,9" << "before" << -1 << 0;
    QTest::newRow("Down in range") << "15062010" << int(Qt::Key_Down) << 0 << "40,9" << "after" << -1 << 0;
    QTest::newRow("Tab after Maxdate") << "01012031" << int(Qt::Key_Tab) << 0 << "0" << "mask" << -1 << 0;
    QTest::newRow("Enter before Mindate") << "31121999" << int(Qt::Key_Enter) << 0 << "0" << "mask" << -1 << 0;
    QTest::newRow("Up after Maxdate") << "01012031" << int(Qt::Key_Up) << 0 << "38" << "mask" << -1 << 0;
    QTest::newRow("Down on 31 June") << "31062010" << int(Qt::Key_Down) << 0 << "" << "mask" << 0 << 0;
    QTest::newRow("Tab on an incomplete date") << "1506" << int(Qt::Key_Tab) << 0 << "9" << "mask" << -1 << 0;
    QTest::newRow("Down on an incomplete date") << "150620" << int(Qt::Key_Down) << 0 << "40,9" << "mask" << -1 << 0;
    QTest::newRow("Tab on day 0") << "00052010" << int(Qt::Key_Tab) << 0 << "" << "mask" << -1
                                  << int(ErrInvalidProcedureCall);
    QTest::newRow("Backspace") << "1506" << int(Qt::Key_Backspace) << 0 << "" << "mask" << 4 << 0;
    QTest::newRow("a digit") << "1506" << int(Qt::Key_7) << 0 << "55" << "mask" << 7 << 0;
}

void tst_dtcontrol::keyRules()
{
    QFETCH(QString, typed);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, caret);
    Form form(QStringLiteral("/"));
    QVERIFY(form.ready());
    form.date->setMindate(QDate(2000, 1, 1));
    form.date->setMaxdate(QDate(2030, 12, 31));
    QTest::keyClicks(form.mask, typed);
    int returned = 0;
    connect(form.mask, &QLineEdit::returnPressed, this, [&] { ++returned; });
    form.raised.clear();

    QTest::keyClick(form.mask, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTEST(form.focus(), "focus");
    QStringList raised;
    for (int code : std::as_const(form.raised))
        raised << QString::number(code);
    QTEST(raised.join(QLatin1Char(',')), "raised");
    if (caret >= 0)
        QCOMPARE(form.mask->SelStart(), caret);
    QFETCH(int, reported);
    QCOMPARE(this->reported.size(), reported ? 1 : 0);
    QCOMPARE(this->reported.value(0), reported);
    // Enter reaches the box (and its form) unless swallowed.
    QCOMPARE(returned, key == Qt::Key_Return || key == Qt::Key_Enter ? form.raised.value(0) != 0 : 0);
    QCOMPARE(form.validateRaised, 0);
}

void tst_dtcontrol::leaving_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QDate>("maxdate"); // invalid: not set
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("caret"); // -1: not checked
    QTest::addColumn<int>("pending"); // Err().Number afterwards; 13 was pending before

    QTest::newRow("nothing typed") << "" << QDate() << "after" << -1 << 13;
    QTest::newRow("a date") << "15062010" << QDate() << "after" << -1 << 13;
    QTest::newRow("after Maxdate") << "01012031" << QDate(2030, 12, 31) << "mask" << -1 << 13;
    QTest::newRow("year 1899") << "31121899" << QDate() << "after" << -1 << 13;
    QTest::newRow("year 1800") << "01011800" << QDate() << "mask" << -1 << 13;
    QTest::newRow("year not begun") << "1506" << QDate() << "mask" << -1 << 13;
    QTest::newRow("31 June, incomplete") << "3106" << QDate() << "mask" << 0 << 13;
    QTest::newRow("month 13, incomplete") << "011320" << QDate() << "mask" << 3 << 13;
    // A complete date that is no date ends the check: the user may leave, the error is dropped.
    QTest::newRow("31 June 2010") << "31062010" << QDate() << "after" << -1 << 0;
}

void tst_dtcontrol::leaving()
{
    QFETCH(QString, typed);
    QFETCH(QDate, maxdate);
    QFETCH(int, caret);
    Form form(QStringLiteral("-"));
    QVERIFY(form.ready());
    form.date->setMaxdate(maxdate);
    QTest::keyClicks(form.mask, typed);
    Err().Raise(ErrTypeMismatch);
    QTest::mouseClick(form.after, Qt::LeftButton);
    QTEST(form.focus(), "focus");
    if (caret >= 0)
        QCOMPARE(form.mask->SelStart(), caret);
    QTEST(Err().Number, "pending");
    Err().Clear();
    QVERIFY(reported.isEmpty());
}

void tst_dtcontrol::value_data()
{
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("order");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("text"); // empty: refused with error 380

    QTest::newRow("day first") << "/" << "" << QDate(2005, 12, 25) << "25/12/2005";
    QTest::newRow("month first") << "-" << "MM/DD/YYYY" << QDate(2005, 12, 25) << "12-25-2005";
    QTest::newRow("early year") << "." << "" << QDate(987, 3, 4) << "04.03.0987";
    QTest::newRow("empty date") << "/" << "" << kEmptyDate << "__/__/____";
    QTest::newRow("five-digit year") << "/" << "" << QDate(10000, 1, 1) << "";
}

void tst_dtcontrol::value()
{
    QFETCH(QString, separator);
    QFETCH(QString, order);
    QFETCH(QDate, date);
    QFETCH(QString, text);
    storeSeparator(separator);
    DTControl control;
    control.setdDateFormat(order);
    control.setvalue(QDate(2001, 2, 3));
    const MaskEdBox *box = control.findChild<MaskEdBox *>();
    const QString before = box->Text();
    // As a host binding late sets it.
    QCOMPARE(errorOf([&] { control.setProperty("value", date); }), text.isEmpty() ? int(ErrInvalidPropertyValue) : 0);
    QCOMPARE(box->Text(), text.isEmpty() ? before : text);
    if (!text.isEmpty())
        QCOMPARE(control.value(), date.isValid() ? date : kEmptyDate);
}

Q_DECLARE_METATYPE(RegionalTest::Settings)

// The mask is read and written in the order dDateFormat sets, whatever order the user's short
// dates follow; only the separator is the user's.
void tst_dtcontrol::orderIsNotTheRegionalOne_data()
{
    QTest::addColumn<RegionalTest::Settings>("settings");
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("text");

    QTest::newRow("US settings, day first") << RegionalTest::us() << "" << "25/12/2005";
    QTest::newRow("UK settings, month first") << RegionalTest::uk() << "mm/dd/yyyy" << "12/25/2005";
    QTest::newRow("German settings, month first") << RegionalTest::german() << "mm/dd/yyyy" << "12.25.2005";
}

void tst_dtcontrol::orderIsNotTheRegionalOne()
{
    QFETCH(RegionalTest::Settings, settings);
    QFETCH(QString, order);
    QFETCH(QString, text);
    RegionalTest::Scope regional;
    regional.set(settings);
    DTControl control;
    control.setdDateFormat(order);
    control.setvalue(QDate(2005, 12, 25));
    auto *box = control.findChild<MaskEdBox *>();
    QCOMPARE(box->Text(), text);
    box->setText(QString(text).replace(QStringLiteral("25"), QStringLiteral("24")));
    QCOMPARE(control.value(), QDate(2005, 12, 24));
}

void tst_dtcontrol::dateFormats_data()
{
    QTest::addColumn<QVariant>("format");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("blanks around") << QVariant(QStringLiteral("  dd/mm/yyyy ")) << true;
    QTest::newRow("month first, capitals") << QVariant(QStringLiteral("MM/DD/YYYY")) << true;
    QTest::newRow("one capital") << QVariant(QStringLiteral("Dd/mm/yyyy")) << false;
    QTest::newRow("Null") << Null() << false;
}

void tst_dtcontrol::dateFormats()
{
    QFETCH(QVariant, format);
    QFETCH(bool, accepted);
    Form form(QStringLiteral("/"));
    QVERIFY(form.ready());
    form.picker->setCustomFormat(QStringLiteral("d.M.yy"));
    QVERIFY(isEmpty(form.date->SetDateFormat(format)));
    QCOMPARE(messages, accepted ? QStringList{} : QStringList{QStringLiteral("INVALID DATE FORMAT|0")});
    QCOMPARE(form.picker->CustomFormat(), accepted ? format.toString() : QStringLiteral("d.M.yy"));
    form.picker->setDate(QDate(2005, 12, 25));
    if (accepted) // the calendar's box shows months for "mm"
        QCOMPARE(form.picker->text().trimmed(), format.toString().startsWith(QLatin1Char('M')) ? "12/25/2005" : "25/12/2005");
    // The mask is still read day first.
    QTest::keyClicks(form.mask, QStringLiteral("25122005"));
    QVERIFY(form.date->ValidDaysOfMonth());
}

// The calendar's button shows beside the mask; picking a day writes it into the mask and
// gives the focus back to it; opening the calendar does not count as leaving the control.
void tst_dtcontrol::calendar()
{
    Form form(QStringLiteral("-"));
    QVERIFY(form.ready());
    form.date->setMindate(QDate(2005, 1, 1));
    form.date->setMaxdate(QDate(2006, 6, 30));
    QCOMPARE(form.picker->toolTip(), QStringLiteral("Select Date from Calendar."));
    const QPoint button(form.date->width() - 6, form.date->height() / 2);
    QCOMPARE(form.date->childAt(button), form.picker);
    QCOMPARE(form.date->childAt(QPoint(6, form.date->height() / 2)), form.mask);

    QTest::keyClicks(form.mask, QStringLiteral("12"));
    QTest::mouseClick(form.picker, Qt::LeftButton, {}, form.picker->mapFrom(form.date, button));
    QCalendarWidget *calendar = form.picker->calendarWidget();
    QTRY_VERIFY(calendar->isVisible());
    QCOMPARE(calendar->minimumDate(), QDate(2005, 1, 1));
    QCOMPARE(calendar->maximumDate(), QDate(2006, 6, 30));
    QCOMPARE(form.mask->Text(), QStringLiteral("12-__-____"));

    calendar->setSelectedDate(QDate(2005, 12, 25));
    QWidget *days = calendar->findChild<QAbstractItemView *>();
    QVERIFY(days);
    QTest::keyClick(days, Qt::Key_Return);
    QTRY_VERIFY(!calendar->isVisible());
    QCOMPARE(form.mask->Text(), QStringLiteral("25-12-2005"));
    QCOMPARE(form.date->value(), QDate(2005, 12, 25));
    // The offscreen platform activates the pop-up like a window and leaves it active when it
    // closes; on a desktop the form stays active throughout.
    form.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QCOMPARE(form.focus(), QStringLiteral("mask"));
    // The calendar is no stop of its own: Tab goes from the mask to the next control.
    QTest::keyClick(form.mask, Qt::Key_Tab);
    QCOMPARE(form.focus(), QStringLiteral("after"));
}

QTEST_MAIN(tst_dtcontrol)
#include "tst_dtcontrol.moc"
