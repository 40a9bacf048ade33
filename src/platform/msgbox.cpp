#include <PanelKestrin/msgbox.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace PanelKestrin {

namespace {

struct ButtonGroup
{
    QList<QMessageBox::StandardButton> order; // classic order: the default-button bits count in it
    QMessageBox::StandardButton escape;       // the answer when the box is closed without a click
};

ButtonGroup buttonGroup(int style)
{
    using B = QMessageBox;
    switch (style & 0x0F) {
    case vbOKCancel: return {{B::Ok, B::Cancel}, B::Cancel};
    case vbAbortRetryIgnore: return {{B::Abort, B::Retry, B::Ignore}, B::Abort};
    case vbYesNoCancel: return {{B::Yes, B::No, B::Cancel}, B::Cancel};
    case vbYesNo: return {{B::Yes, B::No}, B::No};
    case vbRetryCancel: return {{B::Retry, B::Cancel}, B::Cancel};
    default: return {{B::Ok}, B::Ok};
    }
}

QMessageBox::Icon iconFor(int style)
{
    switch (style & 0x70) {
    case vbCritical: return QMessageBox::Critical;
    case vbQuestion: return QMessageBox::Question;
    case vbExclamation: return QMessageBox::Warning;
    case vbInformation: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

int resultFor(QMessageBox::StandardButton button)
{
    switch (button) {
    case QMessageBox::Cancel: return vbCancel;
    case QMessageBox::Abort: return vbAbort;
    case QMessageBox::Retry: return vbRetry;
    case QMessageBox::Ignore: return vbIgnore;
    case QMessageBox::Yes: return vbYes;
    case QMessageBox::No: return vbNo;
    default: return vbOK;
    }
}

MessageBoxHandler &messageBoxHandler()
{
    static MessageBoxHandler handler;
    return handler;
}

int standardMsgBox(const QString &prompt, int style, const QString &title)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        // Without a widget application nothing can be shown; answer as if the box was closed.
        qWarning("MsgBox without a QApplication: %s", qPrintable(prompt));
        return resultFor(buttonGroup(style).escape);
    }
    const std::unique_ptr<QMessageBox> box =
        createMessageBox(prompt, style, title, QApplication::activeWindow());
    box->exec();
    return messageBoxResult(*box);
}

} // namespace

std::unique_ptr<QMessageBox> createMessageBox(const QString &Prompt, int Buttons,
                                              const QString &Title, QWidget *parent)
{
    const ButtonGroup group = buttonGroup(Buttons);
    auto box = std::make_unique<QMessageBox>(
        iconFor(Buttons), Title.isEmpty() ? QGuiApplication::applicationDisplayName() : Title,
        Prompt, QMessageBox::NoButton, parent);
    box->setTextFormat(Qt::PlainText);
    for (QMessageBox::StandardButton b : group.order)
        box->addButton(b);
    const int defaultIndex = (Buttons >> 8) & 0x03;
    box->setDefaultButton(group.order.value(defaultIndex, group.order.first()));
    box->setEscapeButton(box->button(group.escape));
    return box;
}

int messageBoxResult(const QMessageBox &box)
{
    QAbstractButton *chosen = box.clickedButton();
    if (!chosen)
        chosen = box.escapeButton();
    return resultFor(box.standardButton(chosen));
}

int MsgBox(const QString &Prompt, int Buttons, const QString &Title)
{
    // A copy, so that a handler may replace itself while it runs.
    if (const MessageBoxHandler handler = messageBoxHandler())
        return handler(Prompt, Buttons, Title);
    return standardMsgBox(Prompt, Buttons, Title);
}

MessageBoxHandler setMessageBoxHandler(MessageBoxHandler handler)
{
    return std::exchange(messageBoxHandler(), std::move(handler));
}

} // namespace PanelKestrin
