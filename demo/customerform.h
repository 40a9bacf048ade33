#pragma once

#include <PanelKestrin/recordset.h>

#include <QWidget>

class CustomerFields;
class QLineEdit;
class QListWidget;
namespace PanelKestrin {
class Connection;
class TrnControl;
} // namespace PanelKestrin

// The customer form: the transaction toolbar over a list of customers and the fields of the
// one chosen. The form answers the toolbar: it opens the fields on Add and Edit, refuses to
// delete a customer with orders (DeleteAllowed), checks the fields when asked to
// "Validatefields", writes them with parameters on saveclick, finds a customer by code or name,
// and reloads itself on "refresh1".
class CustomerForm : public QWidget
{
    Q_OBJECT
public:
    explicit CustomerForm(PanelKestrin::Connection &connection, QWidget *parent = nullptr);

    // Called by the toolbar by name.
    Q_INVOKABLE bool Validatefields();
    Q_INVOKABLE void refresh1();

protected:
    bool event(QEvent *event) override;

private:
    void connectToolbar();
    void startEditing(bool adding);
    void showCustomer(int row);
    void selectCode(const QString &code);

    PanelKestrin::Connection &m_connection;
    PanelKestrin::Recordset m_customers;
    PanelKestrin::TrnControl *m_toolbar;
    QListWidget *m_list;
    QLineEdit *m_find;
    CustomerFields *m_fields;
    bool m_adding = false;
    QString m_current;
};
