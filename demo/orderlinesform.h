#pragma once

#include <PanelKestrin/recordset.h>

#include <QSet>
#include <QWidget>

class QComboBox;
class QLabel;
namespace PanelKestrin {
class Connection;
class GridPanel;
class gridcontrol;
class PrintSetup;
class ReportEngine;
} // namespace PanelKestrin

// The lines of one order in the editable grid, driven by the grid page toolbar. The user picks
// an order, presses Edit, changes, adds, deletes and finds lines with the grid's own buttons
// and menu, and presses Save: added rows are inserted, edited rows updated and lines deleted in
// the grid removed, in one transaction, and the grid is read again from the database. Undo
// reads it again without saving. Values are checked as each cell is left.
class OrderLinesForm : public QWidget
{
    Q_OBJECT
public:
    explicit OrderLinesForm(PanelKestrin::Connection &connection, QWidget *parent = nullptr);
    ~OrderLinesForm() override;

    // The order shown (0 when there is none).
    int orderNo() const;

protected:
    bool event(QEvent *event) override;

private:
    void connectToolbar();
    void loadOrders();
    void loadItems();
    // Shows the lines of the order chosen in the list and sets the toolbar's mode for them.
    void showOrder();
    // Reads the lines of the shown order into the grid and closes it for editing.
    void reloadLines();
    void setEditing(bool editing);
    void save();
    // Presses Edit again once the current click is over: a save that was refused before
    // writing anything leaves the user's changes in the grid to be corrected.
    void resumeEditing();
    void validateCell(qint32 row, qint16 col, const QVariant &value, bool &Cancel);
    bool refuse(const QString &message, bool &Cancel);
    void setReportParameters();
    void cmdReport_Click();

    PanelKestrin::Connection &m_connection;
    PanelKestrin::Recordset m_lines;
    QComboBox *m_orders;
    QLabel *m_summary;
    PanelKestrin::GridPanel *m_toolbar;
    PanelKestrin::gridcontrol *m_grid;
    PanelKestrin::ReportEngine *m_report;
    PanelKestrin::PrintSetup *m_printSetup;
    // The line numbers the grid was loaded with: those missing at a save were deleted.
    QSet<int> m_loadedLines;
    // The item codes a line may name.
    QSet<QString> m_items;
};
