#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <functional>
#include <memory>

class QMessageBox;
class QWidget;

namespace PanelKestrin {

// Style bits of a message box: one button group, optionally one icon and the default button.
enum MsgBoxStyle : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbAbortRetryIgnore = 2,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbRetryCancel = 5,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    vbDefaultButton1 = 0,
    vbDefaultButton2 = 256,
    vbDefaultButton3 = 512,
    vbDefaultButton4 = 768,
};

// The answer a message box returns: which button the user chose.
enum MsgBoxResult : int {
    vbOK = 1,
    vbCancel = 2,
    vbAbort = 3,
    vbRetry = 4,
    vbIgnore = 5,
    vbYes = 6,
    vbNo = 7,
};

using MessageBoxHandler =
    std::function<int(const QString &Prompt, int Buttons, const QString &Title)>;

// Shows Prompt modally and returns the chosen answer (MsgBoxResult). Buttons combines the
// MsgBoxStyle bits; an empty Title shows the application's display name. Goes through the
// handler set with setMessageBoxHandler when there is one.
PANELKESTRIN_EXPORT int MsgBox(const QString &Prompt, int Buttons = 0, const QString &Title = QString());

// Replaces the message box (tests answer it, hosts may restyle it); an empty function
// restores the standard box. Returns the handler replaced (empty for the standard box).
PANELKESTRIN_EXPORT MessageBoxHandler setMessageBoxHandler(MessageBoxHandler handler);

// Builds, without showing it, the box the standard MsgBox runs: buttons in their classic order,
// icon, default button and the escape answer (Cancel when offered, else No, Abort or OK).
PANELKESTRIN_EXPORT std::unique_ptr<QMessageBox> createMessageBox(const QString &Prompt, int Buttons,
                                                                  const QString &Title,
                                                                  QWidget *parent = nullptr);

// The answer a finished box gives: its clicked button, or its escape button when it was
// closed without a click.
PANELKESTRIN_EXPORT int messageBoxResult(const QMessageBox &box);

} // namespace PanelKestrin
