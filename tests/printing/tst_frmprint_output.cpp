// The print query form's output controls as a user meets them: what each destination shows and
// how tall the frame and the form become, the keystroke rules of the five boxes, the save and
// printer dialogs, Down, Enter and Up moving the focus, and Cancel releasing the report's data.
#include "printformtestsupport.h"

#include <PanelKestrin/hostform.h>
#include <PanelKestrin/twips.h>

#include <QFrame>
#include <QPrinter>

using namespace PrintFormTest;

namespace {

int heightInTwips(QWidget *w)
{
    return PixelsToTwipsY(w->height(), w);
}

QStringList shown(QWidget *form)
{
    QStringList names;
    for (const char *name : {"txtfrompage", "txttopage", "txtnocopies", "UpDown1", "cmbfiletype", "txtfilename",
                             "cmdfilehelp", "cmdprintsetup", "Label1", "Label4", "Label5"})
        if (control<QWidget>(form, name)->isVisibleTo(form))
            names << QLatin1String(name);
    return names;
}

void clickOption(QWidget *form, int index)
{
    auto *option = control<QRadioButton>(form, qPrintable(QStringLiteral("optoutput_%1").arg(index)));
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
}

} // namespace

class tst_frmprint_output : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void layoutPerDestination_data();
    void layoutPerDestination();
    void keystrokeRules_data();
    void keystrokeRules();
    void saveReportAs_data();
    void saveReportAs();
    void printerSetupOpensThePrinterDialog();
    void spinnerCountsOnFromTypedCopies();
    void downEnterAndUpMoveTheFocus();
    void cancelReleasesTheReportData();

private:
    // Opens the form from a toolbar's Print and runs user on it; the form is cancelled after.
    // What the run opened is collected in run.
    void onForm(Run &run, const std::function<void(QDialog *)> &user, const Report &report = Report());
    void onForm(const std::function<void(QDialog *)> &user)
    {
        Run run;
        onForm(run, user);
    }

    Items m_items;
};

void tst_frmprint_output::initTestCase()
{
    ToolbarTest::failOnUnscriptedModals();
    const QString why = m_items.open(QStringLiteral("sqlite"));
    QVERIFY2(why.isEmpty(), qPrintable(why));
    ConnectionSettings::instance().setDatabaseKind(2);
}

void tst_frmprint_output::onForm(Run &run, const std::function<void(QDialog *)> &user, const Report &given)
{
    Report report = given;
    if (report.selquery.isEmpty())
        report.selquery = QStringLiteral("SELECT code || ' ' || name AS prntxt FROM ") + ItemsTable;
    PrintingHost host(m_items, report);
    bool ran = false;
    run.user = [&](QDialog *form) {
        user(form);
        ran = true;
        if (form->isVisible())
            cancel(form);
    };
    host.print();
    QVERIFY(ran);
    QCOMPARE(run.errors, QStringList());
}

void tst_frmprint_output::layoutPerDestination_data()
{
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<int>("frameHeight");
    QTest::addColumn<int>("formHeight");
    QTest::addColumn<QStringList>("visible");
    QTest::newRow("screen, as the form opens") << QList<int>{} << 1110 << 4100 << QStringList{"txtfrompage", "txttopage"};
    QTest::newRow("printer") << QList<int>{1} << 1110 << 4100
                             << QStringList{"txtfrompage", "txttopage", "txtnocopies", "UpDown1", "cmdprintsetup", "Label1"};
    QTest::newRow("file") << QList<int>{2} << 2070 << 5100
                          << QStringList{"txtfrompage", "txttopage", "txtnocopies", "UpDown1", "cmbfiletype",
                                         "txtfilename", "cmdfilehelp", "Label1", "Label4", "Label5"};
    QTest::newRow("file and back to screen") << QList<int>{2, 0} << 1110 << 4100 << QStringList{"txtfrompage", "txttopage"};
}

void tst_frmprint_output::layoutPerDestination()
{
    QFETCH(QList<int>, clicks);
    QFETCH(int, frameHeight);
    QFETCH(int, formHeight);
    QFETCH(QStringList, visible);
    onForm([&](QDialog *form) {
        for (int index : clicks)
            clickOption(form, index);
        QVERIFY(qAbs(heightInTwips(control<QFrame>(form, "Frame2")) - frameHeight) <= 15);
        QVERIFY2(qAbs(CallByName(form, QStringLiteral("Height"), VbGet).toInt() - formHeight) <= 15,
                 qPrintable(CallByName(form, QStringLiteral("Height"), VbGet).toString()));
        QCOMPARE(shown(form), visible);
    });
}

void tst_frmprint_output::keystrokeRules_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("groupOn");
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<QString>("text");
    QTestEventList typed;
    typed.addKeyClicks(QStringLiteral("1a-2"));
    typed.addKeyClick(Qt::Key_Backspace);
    typed.addKeyClicks(QStringLiteral("3 "));
    QTest::newRow("copies: digits, no Backspace") << "txtnocopies" << 0 << typed << "123";
    QTest::newRow("from page: digits, no Backspace") << "txtfrompage" << 0 << typed << "123";
    QTest::newRow("to page: digits and Backspace") << "txttopage" << 0 << typed << "13";
    QTest::newRow("range on a text field: everything") << "txtfrom" << 1 << typed << "1a-3 ";
    QTest::newRow("range on a number: digits, no Backspace") << "txtto" << 2 << typed << "123";
}

void tst_frmprint_output::keystrokeRules()
{
    QFETCH(QString, box);
    QFETCH(int, groupOn);
    QFETCH(QTestEventList, keys);
    m_items.rs.MoveFirst(); // quantity 1 in the current record
    onForm([&](QDialog *form) {
        auto *group = control<QComboBox>(form, "cmbfield");
        group->setFocus();
        for (int i = 0; i < groupOn; ++i)
            QTest::keyClick(group, Qt::Key_Down);
        clickOption(form, 1);
        auto *edit = control<QLineEdit>(form, qPrintable(box));
        edit->setFocus();
        edit->clear();
        keys.simulate(edit);
        QTEST(edit->text(), "text");
    });
}

void tst_frmprint_output::saveReportAs_data()
{
    QTest::addColumn<int>("fileType");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("text file") << 0 << "/tmp/out.txt" << "Save Report As|Text (*.txt)" << "/tmp/out.txt";
    QTest::newRow("doc file") << 1 << "/tmp/out.doc" << "Save Report As|Doc (*.Doc)" << "/tmp/out.doc";
    QTest::newRow("cancelled keeps the name") << 0 << "" << "Save Report As|Text (*.txt)" << "kept.txt";
}

void tst_frmprint_output::saveReportAs()
{
    QFETCH(int, fileType);
    Run run;
    QFETCH(QString, answer);
    run.saveAs = answer;
    onForm(run, [&](QDialog *form) {
        clickOption(form, 2);
        auto *type = control<QComboBox>(form, "cmbfiletype");
        type->setFocus();
        QTest::keyClick(type, fileType ? Qt::Key_Down : Qt::Key_Up);
        typeInto(form, "txtfilename", QStringLiteral("kept.txt"));
        QTest::mouseClick(control<QAbstractButton>(form, "cmdfilehelp"), Qt::LeftButton);
        QTEST(control<QLineEdit>(form, "txtfilename")->text(), "fileName");
    });
    QCOMPARE(run.dialogs.size(), 1);
    QTEST(run.dialogs.first(), "dialog");
}

void tst_frmprint_output::printerSetupOpensThePrinterDialog()
{
    int asked = 0;
    PrinterDialogHandler previous = setPrinterDialogHandler([&](QPrinter *, QWidget *) {
        ++asked;
        return int(QDialog::Rejected);
    });
    onForm([&](QDialog *form) {
        clickOption(form, 1);
        QTest::mouseClick(control<QAbstractButton>(form, "cmdprintsetup"), Qt::LeftButton);
        QTest::keyClick(control<QAbstractButton>(form, "cmdprintsetup"), Qt::Key_Space);
    });
    setPrinterDialogHandler(previous);
    QCOMPARE(asked, 2); // what a confirmed setup keeps is the report printer's own test
}

// The spinner starts from what the user typed into its buddy box, not from its own last count.
void tst_frmprint_output::spinnerCountsOnFromTypedCopies()
{
    onForm([&](QDialog *form) {
        clickOption(form, 1);
        typeInto(form, "txtnocopies", QStringLiteral("5"));
        QWidget *spinner = control<QWidget>(form, "UpDown1");
        auto *copies = control<QLineEdit>(form, "txtnocopies");
        QTest::mouseClick(spinner, Qt::LeftButton, {}, QPoint(spinner->width() / 2, 2)); // its up arrow
        QCOMPARE(copies->text(), QStringLiteral("6"));
        QTest::mouseClick(spinner, Qt::LeftButton, {}, QPoint(spinner->width() / 2, spinner->height() - 3));
        QTest::mouseClick(spinner, Qt::LeftButton, {}, QPoint(spinner->width() / 2, spinner->height() - 3));
        QCOMPARE(copies->text(), QStringLiteral("4"));
    });
}

void tst_frmprint_output::downEnterAndUpMoveTheFocus()
{
    onForm([&](QDialog *form) {
        QVERIFY(QTest::qWaitForWindowActive(form));
        auto *from = control<QLineEdit>(form, "txtfrom");
        auto *to = control<QLineEdit>(form, "txtto");
        from->setFocus();
        QTest::keyClick(from, Qt::Key_Down);
        QTRY_COMPARE(QApplication::focusWidget(), to);
        QTest::keyClick(to, Qt::Key_Up);
        QTRY_COMPARE(QApplication::focusWidget(), from);
        QTest::keyClick(from, Qt::Key_Return);
        QTRY_COMPARE(QApplication::focusWidget(), to);
        QTest::keyClick(to, Qt::Key_Left); // other keys leave the focus where it is
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), to);
    });
}

void tst_frmprint_output::cancelReleasesTheReportData()
{
    QPointer<QObject> data;
    Run run;
    onForm(run, [&](QDialog *form) {
        pressOK(form); // to the preview: the form stays open with its data
        data = form->findChild<Recordset *>(QStringLiteral("rsReport"));
        QVERIFY2(data, qPrintable(run.errors.join(u';') + run.boxes.join(u';')));
        QCOMPARE(run.previews, 1);
        QVERIFY(form->isVisible());
        cancel(form);
        QVERIFY(!data);
    });
}

QTEST_MAIN(tst_frmprint_output)
#include "tst_frmprint_output.moc"
