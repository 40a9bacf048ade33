#include "customerform.h"

#include "customerfields.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/trncontrol.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

using namespace PanelKestrin;

CustomerForm::CustomerForm(Connection &connection, QWidget *parent)
    : QWidget(parent), m_connection(connection)
{
    setWindowTitle(tr("Customers"));
    m_toolbar = new TrnControl(this);
    m_list = new QListWidget(this);
    m_fields = new CustomerFields(this);
    QHBoxLayout *findRow = CustomerFields::findRow(this, m_find);
    auto *right = new QVBoxLayout;
    right->addWidget(m_fields);
    right->addLayout(findRow);
    right->addStretch(1);
    auto *body = new QHBoxLayout;
    body->addWidget(m_list, 2);
    body->addLayout(right, 3);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_toolbar);
    layout->addLayout(body, 1);

    m_customers.Open(QStringLiteral("SELECT ") + CustomerFields::selectList()
                         + QStringLiteral(" FROM customers ORDER BY cust_code"),
                     &m_connection);
    m_toolbar->setsrset(&m_customers);
    connectToolbar();
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
        guardEvent(QStringLiteral("CustomerForm.list"), [&] { showCustomer(row); });
    });
    refresh1();
    m_toolbar->setcmdenable(m_list->count() > 0 ? QStringLiteral("11101110") : QStringLiteral("10000010"));
    resize(760, 420);
}

void CustomerForm::connectToolbar()
{
    TrnControl *bar = m_toolbar;
    connect(bar, &TrnControl::addclick, this, [this] { startEditing(true); });
    connect(bar, &TrnControl::editclick, this, [this] { startEditing(false); });
    connect(bar, &TrnControl::DeleteAllowed, this, [this](bool &Cancel) {
        const int orders = CustomerFields::orderCount(m_connection, m_current);
        if (orders > 0) {
            MsgBox(tr("Customer %1 has %2 orders and cannot be deleted.").arg(m_current).arg(orders), vbInformation);
            Cancel = true;
        }
    });
    connect(bar, &TrnControl::Deleteclick, this, [this] {
        CustomerFields::remove(m_connection, m_current);
        m_customers.Requery(); // the toolbar reads BOF and EOF next
    });
    connect(bar, &TrnControl::saveclick, this, [this] {
        if (m_adding)
            m_fields->insert(m_connection);
        else
            m_fields->update(m_connection);
        m_current = m_fields->code();
        refresh1(); // no refresh follows a save: show the saved customer now
    });
    connect(bar, &TrnControl::findclick, this, [this] {
        const QString wanted = m_find->text().trimmed().toUpper();
        for (int row = 0; row < m_list->count(); ++row) {
            const QString item = m_list->item(row)->text().toUpper();
            if (!wanted.isEmpty() && (item.startsWith(wanted) || item.section(QStringLiteral(" - "), 1).startsWith(wanted))) {
                m_current = item.section(QStringLiteral(" - "), 0, 0);
                return; // refresh1 follows and shows it
            }
        }
        MsgBox(tr("No customer matches \"%1\".").arg(m_find->text()), vbInformation);
    });
    connect(bar, &TrnControl::printclick, this,
            [this] { CustomerFields::setReportParameters(*m_toolbar, m_customers, m_connection); });
}

void CustomerForm::startEditing(bool adding)
{
    m_adding = adding;
    m_list->setEnabled(false);
    if (adding)
        m_fields->clear();
    m_fields->setEditing(true, adding);
}

// srset, like every report parameter, is one value for all the toolbars of the process: the
// form claims it whenever it becomes the active window.
bool CustomerForm::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        m_toolbar->setsrset(&m_customers);
    return QWidget::event(event);
}

bool CustomerForm::Validatefields()
{
    return m_fields->validate(m_connection, m_adding);
}

// Reads the customers again, lists them and shows the current one (or the one before it).
void CustomerForm::refresh1()
{
    m_customers.Requery();
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    for (; !m_customers.adoEOF(); m_customers.MoveNext())
        m_list->addItem(CStr(m_customers.Fields().Item(0).Value()) + QStringLiteral(" - ")
                        + CStr(m_customers.Fields().Item(1).Value()));
    m_list->setEnabled(true);
    m_fields->setEditing(false, false);
    selectCode(m_current);
}

void CustomerForm::selectCode(const QString &code)
{
    int row = 0;
    for (int i = 0; i < m_list->count(); ++i) {
        if (m_list->item(i)->text().section(QStringLiteral(" - "), 0, 0) <= code)
            row = i;
    }
    m_list->setCurrentRow(m_list->count() > 0 ? row : -1);
    showCustomer(m_list->currentRow());
}

// srset stands on the shown customer, so that the toolbar sees whether one is left.
void CustomerForm::showCustomer(int row)
{
    if (row < 0 || m_customers.RecordCount() == 0) {
        m_current.clear();
        m_fields->clear();
        return;
    }
    m_customers.setBookmark(double(row + 1));
    m_fields->showRecord(m_customers);
    m_current = m_fields->code();
}
