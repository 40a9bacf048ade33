#include <PanelKestrin/dialog.h>

#include <PanelKestrin/beep.h>

#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

namespace PanelKestrin {

namespace {
QPointer<Dialog> shown;
constexpr int kShowMilliseconds = 2000;
constexpr int kBeeps = 100;
} // namespace

Dialog::Dialog(QWidget *owner) : QDialog(owner)
{
    setObjectName(QStringLiteral("Dialog"));
    setWindowTitle(tr("Error Message"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setAlignment(Qt::AlignCenter);
    Label1->setMinimumWidth(240);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Label1);
    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setSingleShot(true);
    // A coarse timer may fire up to 5% early; the message stays its full two seconds.
    Timer1->setTimerType(Qt::PreciseTimer);
    connect(Timer1, &QTimer::timeout, this, &Dialog::Timer1_Timer);
}

Dialog *Dialog::current()
{
    return shown.data();
}

void Dialog::DisplayMsg(const QString &Message, QWidget *MsgForm)
{
    if (!shown || shown->parentWidget() != MsgForm) {
        if (shown)
            shown->close();
        shown = new Dialog(MsgForm);
    }
    Dialog *dialog = shown;
    // Top aligned with the calling form; the left stays where the dialog is (centred over the
    // form the first time).
    const int top = MsgForm ? MsgForm->frameGeometry().top() : dialog->y();
    int left = dialog->x();
    if (!dialog->isVisible() && MsgForm)
        left = MsgForm->frameGeometry().center().x() - dialog->sizeHint().width() / 2;
    dialog->move(left, top);
    dialog->Timer1->setInterval(kShowMilliseconds);
    dialog->Label1->setText(Message);
    for (int i = 1; i <= kBeeps; ++i)
        Beep();
    dialog->show();
    dialog->Timer1->start();
}

void Dialog::Timer1_Timer()
{
    Timer1->stop();
    close();
}

} // namespace PanelKestrin
