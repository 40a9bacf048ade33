#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QDialog>

class QLabel;
class QTimer;

namespace PanelKestrin {

// The timed message: shows a one-line message beside the calling form without asking for an
// answer, sounds the bell and closes itself two seconds later. Modeless; one instance, reused.
class PANELKESTRIN_EXPORT Dialog : public QDialog
{
    Q_OBJECT
public:
    // The shown dialog, or null when none is shown.
    static Dialog *current();

    // Shows Message at MsgForm's top, owned by MsgForm, and returns at once. A call while the
    // dialog is shown replaces the text and starts the two seconds again.
    static void DisplayMsg(const QString &Message, QWidget *MsgForm);

    // The timer's tick: closes (unloads) the dialog.
    Q_INVOKABLE void Timer1_Timer();

private:
    explicit Dialog(QWidget *owner);

    QLabel *Label1;
    QTimer *Timer1;
};

} // namespace PanelKestrin
