#include "customerbrowseform.h"

#include "customerfields.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/usercontrol1.h>

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace PanelKestrin;

CustomerBrowseForm::CustomerBrowseForm(Connection &connection, QWidget *parent)
    : QWidget(parent), m_connection(connection)
{
    setWindowTitle(tr("Customer browser"));
    m_toolbar = new UserControl1(this);
    m_fields = new CustomerFields(this);
    m_position = new QLabel(this);
    QHBoxLayout *findRow = CustomerFields::findRow(this, m_find);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_toolbar);
    layout->addWidget(m_position);
    layout->addWidget(m_fields);
    layout->addLayout(findRow);
    layout->addStretch(1);

    // Insertion order, so that a customer just added is the last record.
    m_customers.Open(QStringLiteral("SELECT ") + CustomerFields::selectList()
                         + QStringLiteral(" FROM customers ORDER BY rowid"),
                     &m_connection);
    m_toolbar->setsrset(&m_customers);
    // The navigation gates read "not allowed" for their flag, so those stay False; Add, Edit
    // and Delete need their permission.
    m_toolbar->gAllowAdd = true;
    m_toolbar->gAllowEdit = true;
    m_toolbar->gAllowDelete = true;
    m_toolbar->setcmdenable(m_customers.RecordCount() > 0 ? QStringLiteral("001111101110")
                                                         : QStringLiteral("000010000010"));
    connectToolbar();
    connect(&m_customers, &Recordset::MoveComplete, this, [this](qint32 &, qint32 &) { showCurrent(); });
    connect(m_fields, &CustomerFields::edited, this, [this] { m_toolbar->gFormIsDirty = true; });
    showCurrent();
    resize(760, 360);
}

void CustomerBrowseForm::connectToolbar()
{
    UserControl1 *bar = m_toolbar;
    const auto startEditing = [this](bool adding) {
        m_adding = adding;
        if (adding)
            m_fields->clear();
        m_fields->setEditing(true, adding);
    };
    connect(bar, &UserControl1::addclick, this, [startEditing] { startEditing(true); });
    connect(bar, &UserControl1::editclick, this, [startEditing] { startEditing(false); });
    connect(bar, &UserControl1::saveclick, this, [this] {
        const int position = m_customers.AbsolutePosition();
        if (m_adding)
            m_fields->insert(m_connection);
        else
            m_fields->update(m_connection);
        readAgainAt(position); // an added customer is reached by the toolbar's move to the last
        m_fields->setEditing(false, false);
        m_toolbar->gFormIsDirty = false;
    });
    connect(bar, &UserControl1::Deleteclick, this, [this] { deleteCurrent(); });
    connect(bar, &UserControl1::findclick, this, [this] { findCustomer(); });
    connect(bar, &UserControl1::printclick, this,
            [this] { CustomerFields::setReportParameters(*m_toolbar, m_customers, m_connection); });
}

// srset, like every report parameter, is one value for all the toolbars of the process: the
// form claims it whenever it becomes the active window.
bool CustomerBrowseForm::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        m_toolbar->setsrset(&m_customers);
    return QWidget::event(event);
}

bool CustomerBrowseForm::Validatefields()
{
    return m_fields->validate(m_connection, m_adding);
}

void CustomerBrowseForm::refresh1()
{
    m_fields->setEditing(false, false);
    m_toolbar->gFormIsDirty = false;
    showCurrent();
}

void CustomerBrowseForm::showCurrent()
{
    m_fields->showRecord(m_customers);
    const int count = m_customers.RecordCount();
    const int at = m_customers.AbsolutePosition();
    m_position->setText(at > 0 ? tr("Customer %1 of %2").arg(at).arg(count) : tr("%n customer(s)", nullptr, count));
}

// A customer with orders stays: the toolbar is told to stop. Otherwise the recordset is read
// again standing just before the deleted record's place, so that the toolbar's move to the
// next record shows the customer that followed it.
void CustomerBrowseForm::deleteCurrent()
{
    const QString code = m_fields->code();
    const int orders = CustomerFields::orderCount(m_connection, code);
    if (orders > 0) {
        MsgBox(tr("Customer %1 has %2 orders and cannot be deleted.").arg(code).arg(orders), vbInformation);
        m_toolbar->gErrorInClick = true;
        return;
    }
    const int position = m_customers.AbsolutePosition();
    CustomerFields::remove(m_connection, code);
    readAgainAt(position - 1);
    if (position == 1 && m_customers.RecordCount() > 0)
        m_customers.MovePrevious(); // before the first record
}

void CustomerBrowseForm::readAgainAt(int position)
{
    m_customers.Requery();
    if (position > 1 && position <= m_customers.RecordCount())
        m_customers.setBookmark(double(position));
    showCurrent();
}

void CustomerBrowseForm::findCustomer()
{
    const QString wanted = m_find->text().trimmed().toUpper();
    if (wanted.isEmpty() || m_customers.RecordCount() == 0)
        return;
    const QVariant start = m_customers.BOF() || m_customers.adoEOF() ? QVariant() : m_customers.Bookmark();
    for (m_customers.MoveFirst(); !m_customers.adoEOF(); m_customers.MoveNext()) {
        if (CStr(m_customers.Fields().Item(0).Value()).toUpper().startsWith(wanted)
            || CStr(m_customers.Fields().Item(1).Value()).toUpper().startsWith(wanted))
            return; // refresh1 follows and shows it
    }
    if (start.isValid())
        m_customers.setBookmark(start);
    MsgBox(tr("No customer matches \"%1\".").arg(m_find->text()), vbInformation);
}

// The close query goes through the toolbar, which asks when the fields hold changes.
void CustomerBrowseForm::closeEvent(QCloseEvent *event)
{
    m_toolbar->gFormQueryUnloadFired = true;
    m_toolbar->Command1_Click(UserControl1::QueryUnloadCommand);
    m_toolbar->gFormQueryUnloadFired = false;
    event->setAccepted(!m_toolbar->gUnloadFomForQueryUnload);
}
