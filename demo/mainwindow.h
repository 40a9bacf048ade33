#pragma once

#include "demoforms.h"

#include <QMainWindow>

// The demo's main window: what the library is, one button per host form naming what the form
// shows and what to try on it (Enter, Space or a click opens it), and the database in use.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    MainWindow(DemoContext &context, const QString &database, QWidget *parent = nullptr);

    // Opens the form listed at index as a window of its own and returns it.
    QWidget *openForm(int index);
    const QList<DemoForm> &forms() const { return m_forms; }

private:
    DemoContext &m_context;
    QList<DemoForm> m_forms;
};
