#pragma once

#include <QWidget>

class QTableWidget;
namespace PanelKestrin { class Connection; }

// Lists the demo's tables with their row counts and, for the selected table, each column's
// description as a recordset reports it (type code, size, precision, scale, attributes).
class DatabaseSummaryForm : public QWidget
{
    Q_OBJECT
public:
    explicit DatabaseSummaryForm(PanelKestrin::Connection &connection, QWidget *parent = nullptr);

private:
    void showColumns(const QString &table);

    PanelKestrin::Connection &m_connection;
    QTableWidget *m_tables;
    QTableWidget *m_columns;
};
