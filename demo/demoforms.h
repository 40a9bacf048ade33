#pragma once

#include <QList>
#include <QString>
#include <functional>

class QWidget;
namespace PanelKestrin { class Connection; }

// What every demo form gets: the open database connection.
struct DemoContext {
    PanelKestrin::Connection *connection = nullptr;
};

// One entry of the main window's list: a host form the user can open.
struct DemoForm {
    QString title;
    QString description;
    std::function<QWidget *(DemoContext &)> create;
};

// The demo's forms, in the order the main window lists them.
QList<DemoForm> demoForms();
