#pragma once

#include <PanelKestrin/recordset.h>

#include <QWidget>

class CustomerFields;
class QLabel;
class QLineEdit;
namespace PanelKestrin {
class Connection;
class UserControl1;
} // namespace PanelKestrin

// The customer browser: the navigation toolbar moving through a recordset of the customers,
// one record at a time. The form shows whatever record the recordset reaches, lets the toolbar
// add, edit and delete (its gAllow flags), tells it when the fields hold unsaved changes
// (gFormIsDirty), stops a delete of a customer with orders (gErrorInClick), and asks it before
// closing (the hidden close-query command).
class CustomerBrowseForm : public QWidget
{
    Q_OBJECT
public:
    explicit CustomerBrowseForm(PanelKestrin::Connection &connection, QWidget *parent = nullptr);

    // Called by the toolbar by name.
    Q_INVOKABLE bool Validatefields();
    Q_INVOKABLE void refresh1();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void connectToolbar();
    void showCurrent();
    void deleteCurrent();
    void findCustomer();
    void readAgainAt(int position);

    PanelKestrin::Connection &m_connection;
    PanelKestrin::Recordset m_customers;
    PanelKestrin::UserControl1 *m_toolbar;
    CustomerFields *m_fields;
    QLineEdit *m_find;
    QLabel *m_position;
    bool m_adding = false;
};
