#pragma once

#include <QWidget>

namespace PanelKestrin {
class Connection;
class Recordset;
class gridcontrol;
}

// Every order line with its item's description in the editable grid, read-only for now: the
// column rules disable every column, so the editor never opens, and four buttons page the grid.
class OrderLinesForm : public QWidget
{
    Q_OBJECT
public:
    explicit OrderLinesForm(PanelKestrin::Connection &connection, QWidget *parent = nullptr);
    ~OrderLinesForm() override;

private:
    PanelKestrin::gridcontrol *m_grid;
    PanelKestrin::Recordset *m_lines;
};
