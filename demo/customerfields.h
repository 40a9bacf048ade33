#pragma once

#include <QWidget>

class QCheckBox;
class QHBoxLayout;
class QLineEdit;
class QSpinBox;
namespace PanelKestrin {
class Connection;
class DTControl;
class Recordset;
class ToolbarBase;
} // namespace PanelKestrin

// The editors of one customer, shared by the demo's customer forms: shows the current record
// of a customers recordset, checks what the user typed and writes it back through the
// connection with parameters.
class CustomerFields : public QWidget
{
    Q_OBJECT
public:
    // The columns the forms select, in the order showRecord reads them.
    static QString selectList();
    // The "Look for" row both customer forms show under the fields; find is its line edit.
    static QHBoxLayout *findRow(QWidget *form, QLineEdit *&find);

    explicit CustomerFields(QWidget *parent = nullptr);

    // Shows the recordset's current record; blank at either end.
    void showRecord(const PanelKestrin::Recordset &rs);
    void clear();
    // Editable fields; the code only while adding (it is the key).
    void setEditing(bool editing, bool adding);
    QString code() const;

    // Asks the user to correct the first wrong field (exclamation box) and returns false, or
    // returns true. A new code must not exist yet.
    bool validate(PanelKestrin::Connection &cn, bool adding);
    void insert(PanelKestrin::Connection &cn) const;
    void update(PanelKestrin::Connection &cn) const;
    // Orders that refer to the customer: a customer with orders is not deleted.
    static int orderCount(PanelKestrin::Connection &cn, const QString &code);
    static void remove(PanelKestrin::Connection &cn, const QString &code);

    // The customer list report: what a form sets in its printclick handler.
    static void setReportParameters(PanelKestrin::ToolbarBase &toolbar, PanelKestrin::Recordset &rs,
                                    PanelKestrin::Connection &cn);

Q_SIGNALS:
    // The user changed a value.
    void edited();

private:
    QLineEdit *m_code;
    QLineEdit *m_name;
    QLineEdit *m_city;
    QLineEdit *m_phone;
    // Born between 1 January 1900 and today; the start date has no range.
    PanelKestrin::DTControl *m_born;
    PanelKestrin::DTControl *m_start;
    QLineEdit *m_credit;
    QSpinBox *m_discount;
    QCheckBox *m_active;
    // Set while a record is shown, so that only the user's changes count as edits.
    bool m_showing = false;
};
