#pragma once

#include "demoforms.h"

#include <QMainWindow>

class QListWidget;

// The demo's main window: the list of host forms; Enter or a double click opens one.
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
    QListWidget *m_list;
};
