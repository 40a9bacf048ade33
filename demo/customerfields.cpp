#include "customerfields.h"

#include "demoreportfiles.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/toolbarbase.h>
#include <PanelKestrin/variant.h>

#include <QApplication>
#include <QCheckBox>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSpinBox>
#include <utility>

using namespace PanelKestrin;

namespace {

QString text(const Recordset &rs, const char *field)
{
    const QVariant value = rs.Fields().Item(QLatin1String(field)).Value();
    return isNull(value) ? QString() : CStr(value);
}

QVariant orNull(const QString &value)
{
    return value.trimmed().isEmpty() ? QVariant() : QVariant(value.trimmed());
}

// A literal for a key value read back from the database (quotes doubled).
QString quoted(const QString &value)
{
    return QLatin1Char('\'') + QString(value).replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
}

bool refuse(QWidget *field, const QString &message)
{
    MsgBox(message, vbExclamation);
    field->setFocus();
    return false;
}

// The columns of the customer list report.
QString reportColumns()
{
    return QStringLiteral("cust_code, cust_name, city, phone, credit_limit, discount_pct, active");
}

const QDate kEmptyDate(1899, 12, 30);

// Whether the user's short-date pattern ("dd/MM/yyyy", "M/d/yyyy"...) names the day first.
bool userDatesDayFirst()
{
    const QString pattern = GetRegValue(HKEY_CURRENT_USER, QStringLiteral("\\Control Panel\\International"),
                                        QStringLiteral("sShortDate"));
    const int day = pattern.indexOf(QLatin1Char('d'), 0, Qt::CaseInsensitive);
    const int month = pattern.indexOf(QLatin1Char('m'), 0, Qt::CaseInsensitive);
    return day >= 0 && (month < 0 || day < month);
}

// A date column's parameter: the date as ISO text (as the database keeps dates), or NULL.
QVariant dateParameter(const DTControl *date)
{
    const QDate value = date->value();
    return value == kEmptyDate ? QVariant() : QVariant(value.toString(Qt::ISODate));
}

// A date box holds a whole date or nothing: the message is for a part-typed or impossible date
// and for one outside the box's own range (the mouse can leave such a date behind).
QString dateProblem(const DTControl *date, const QString &what, const QDate &earliest, const QDate &latest)
{
    const QString digits = date->findChild<MaskEdBox *>(QStringLiteral("MaskEdBox1"))->ClipText();
    if (digits.isEmpty())
        return QString();
    QDate value;
    try {
        value = date->value();
    } catch (const RuntimeError &) {
        return CustomerFields::tr("The %1 is not a date.").arg(what);
    }
    if (value == kEmptyDate)
        return CustomerFields::tr("Enter the whole %1: day, month and four-digit year.").arg(what);
    if (value < earliest || value > latest)
        return CustomerFields::tr("The %1 must lie between %2 and %3.")
            .arg(what, CStr(earliest), CStr(latest)); // as the user writes dates
    return QString();
}

} // namespace

QString CustomerFields::selectList()
{
    return reportColumns() + QStringLiteral(", date_of_birth, start_date");
}

CustomerFields::CustomerFields(QWidget *parent) : QWidget(parent)
{
    auto *form = new QFormLayout(this);
    const auto line = [this](int maxLength) {
        auto *edit = new QLineEdit(this);
        edit->setMaxLength(maxLength);
        connect(edit, &QLineEdit::textEdited, this, &CustomerFields::edited);
        return edit;
    };
    m_code = line(8);
    m_name = line(40);
    m_city = line(30);
    m_phone = line(20);
    const auto dateBox = [this] {
        auto *date = new DTControl(this);
        // Day and month in the order of the user's short dates, as the grids show them.
        const QString order = userDatesDayFirst() ? QStringLiteral("dd/mm/yyyy") : QStringLiteral("mm/dd/yyyy");
        date->setdDateFormat(order);
        connect(date->findChild<MaskEdBox *>(QStringLiteral("MaskEdBox1")), &QLineEdit::textChanged, this, [this] {
            if (!m_showing)
                emit edited(); // typed or picked from the calendar
        });
        return date;
    };
    m_born = dateBox();
    m_born->setMindate(QDate(1900, 1, 1));
    m_born->setMaxdate(QDate::currentDate());
    m_start = dateBox();
    m_credit = line(14);
    m_credit->setValidator(new QDoubleValidator(0, 9999999999.99, 2, m_credit));
    m_discount = new QSpinBox(this);
    m_discount->setRange(0, 100);
    m_discount->setSuffix(QStringLiteral(" %"));
    connect(m_discount, &QSpinBox::valueChanged, this, [this] {
        if (m_discount->hasFocus())
            emit edited();
    });
    m_active = new QCheckBox(tr("Acti&ve account"), this);
    connect(m_active, &QCheckBox::clicked, this, &CustomerFields::edited);
    form->addRow(tr("&Code"), m_code);
    form->addRow(tr("Na&me"), m_name);
    form->addRow(tr("Cit&y"), m_city);
    form->addRow(tr("P&hone"), m_phone);
    form->addRow(tr("Date of &birth"), m_born);
    form->addRow(tr("Start date"), m_start);
    form->addRow(tr("Credi&t limit"), m_credit);
    form->addRow(tr("Disc&ount"), m_discount);
    form->addRow(QString(), m_active);
    setEditing(false, false);
}

void CustomerFields::showRecord(const Recordset &rs)
{
    const QScopedValueRollback<bool> showing(m_showing, true);
    if (rs.BOF() || rs.adoEOF()) {
        clear();
        return;
    }
    m_code->setText(text(rs, "cust_code"));
    m_name->setText(text(rs, "cust_name"));
    m_city->setText(text(rs, "city"));
    m_phone->setText(text(rs, "phone"));
    const QVariant credit = rs.Fields().Item(QStringLiteral("credit_limit")).Value();
    m_credit->setText(isNull(credit) ? QString() : QString::number(CDbl(credit), 'f', 2));
    const QVariant discount = rs.Fields().Item(QStringLiteral("discount_pct")).Value();
    m_discount->setValue(isNull(discount) ? 0 : CInt(discount));
    m_active->setChecked(CBool(rs.Fields().Item(QStringLiteral("active")).Value()));
    for (const auto &[date, column] : {std::pair{m_born, "date_of_birth"}, std::pair{m_start, "start_date"}}) {
        const QVariant value = rs.Fields().Item(QLatin1String(column)).Value();
        date->setvalue(isNull(value) ? QDate() : CDate(value));
    }
}

void CustomerFields::clear()
{
    const QScopedValueRollback<bool> showing(m_showing, true);
    for (QLineEdit *edit : {m_code, m_name, m_city, m_phone, m_credit})
        edit->clear();
    m_born->setvalue(QDate());
    m_start->setvalue(QDate());
    m_discount->setValue(0);
    m_active->setChecked(true);
}

namespace {

// A read-only field shows its value in normal text on the form's own background, so that every
// kind of field looks the same when it cannot be changed; an open one gets its white box back.
void showBoxOpen(QWidget *field, bool open)
{
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, open ? QApplication::palette(field).color(QPalette::Base)
                                          : palette.color(QPalette::Window));
    field->setPalette(palette);
}

// A line edit or a spin box (each has its own setReadOnly).
template <typename Box>
void setOpen(Box *field, bool open)
{
    field->setReadOnly(!open);
    showBoxOpen(field, open);
}

// The date box's mask takes no typing and its calendar stays shut.
void setOpen(DTControl *field, bool open)
{
    setOpen(field->findChild<MaskEdBox *>(QStringLiteral("MaskEdBox1")), open);
    field->findChild<QWidget *>(QStringLiteral("DTPicker1"))->setEnabled(open);
}

// A check box has no read-only state. A closed one takes no focus and this filter swallows
// whatever would toggle it: clicks, keys and its mnemonic.
class ClosedCheckBox : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
            return true;
        default:
            return QObject::eventFilter(watched, event);
        }
    }
};

void setOpen(QCheckBox *field, bool open)
{
    auto *closed = field->findChild<ClosedCheckBox *>(QString(), Qt::FindDirectChildrenOnly);
    if (!closed)
        closed = new ClosedCheckBox(field);
    if (open)
        field->removeEventFilter(closed);
    else
        field->installEventFilter(closed);
    field->setFocusPolicy(open ? Qt::StrongFocus : Qt::NoFocus);
}

} // namespace

void CustomerFields::setEditing(bool editing, bool adding)
{
    setOpen(m_code, editing && adding);
    for (QLineEdit *edit : {m_name, m_city, m_phone, m_credit})
        setOpen(edit, editing);
    setOpen(m_discount, editing);
    setOpen(m_born, editing);
    setOpen(m_start, editing);
    setOpen(m_active, editing);
    if (editing)
        (adding ? m_code : m_name)->setFocus();
}

QString CustomerFields::code() const
{
    return m_code->text().trimmed();
}

bool CustomerFields::validate(Connection &cn, bool adding)
{
    if (code().isEmpty())
        return refuse(m_code, tr("Enter the customer's code."));
    if (m_name->text().trimmed().isEmpty())
        return refuse(m_name, tr("Enter the customer's name."));
    if (adding) {
        Recordset existing;
        existing.Open(QStringLiteral("SELECT cust_code FROM customers WHERE cust_code = %1").arg(quoted(code())), &cn);
        if (existing.RecordCount() > 0)
            return refuse(m_code, tr("Customer %1 already exists.").arg(code()));
    }
    const QString born = dateProblem(m_born, tr("date of birth"), QDate(1900, 1, 1), QDate::currentDate());
    if (!born.isEmpty())
        return refuse(m_born, born);
    const QString start = dateProblem(m_start, tr("start date"), QDate(1601, 1, 1), QDate(9999, 12, 31));
    if (!start.isEmpty())
        return refuse(m_start, start);
    if (!m_credit->text().isEmpty() && !m_credit->hasAcceptableInput())
        return refuse(m_credit, tr("The credit limit must be an amount."));
    return true;
}

void CustomerFields::insert(Connection &cn) const
{
    cn.Execute(QStringLiteral("INSERT INTO customers (cust_code, cust_name, city, phone, credit_limit, discount_pct, active,"
                              " date_of_birth, start_date) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
               {code(), m_name->text().trimmed(), orNull(m_city->text()), orNull(m_phone->text()),
                m_credit->text().isEmpty() ? QVariant() : QVariant(m_credit->text().toDouble()), m_discount->value(),
                m_active->isChecked(), dateParameter(m_born), dateParameter(m_start)});
}

void CustomerFields::update(Connection &cn) const
{
    cn.Execute(QStringLiteral("UPDATE customers SET cust_name = ?, city = ?, phone = ?, credit_limit = ?,"
                              " discount_pct = ?, active = ?, date_of_birth = ?, start_date = ? WHERE cust_code = ?"),
               {m_name->text().trimmed(), orNull(m_city->text()), orNull(m_phone->text()),
                m_credit->text().isEmpty() ? QVariant() : QVariant(m_credit->text().toDouble()), m_discount->value(),
                m_active->isChecked(), dateParameter(m_born), dateParameter(m_start), code()});
}

int CustomerFields::orderCount(Connection &cn, const QString &code)
{
    Recordset orders;
    orders.Open(QStringLiteral("SELECT order_no FROM orders WHERE cust_code = %1").arg(quoted(code)), &cn);
    return orders.RecordCount();
}

void CustomerFields::remove(Connection &cn, const QString &code)
{
    cn.Execute(QStringLiteral("DELETE FROM customers WHERE cust_code = ?"), {code});
}

void CustomerFields::setReportParameters(ToolbarBase &toolbar, Recordset &rs, Connection &cn)
{
    toolbar.setsrset(&rs);
    toolbar.setsortcaptions(tr("Name,Code,City"));
    toolbar.setsortfields(QStringLiteral("cust_name,cust_code,city"));
    toolbar.setselquery(QStringLiteral("SELECT ") + reportColumns() + QStringLiteral(" FROM customers"));
    toolbar.setrptheading(tr("Customer list"));
    // Printed by the report engine over the shipped RPTcustomers.rpt (the table comes from the
    // name after RPT), narrowed by the print form's selection formula.
    reportParameters().ReportToPrint = QStringLiteral("C");
    toolbar.setrpttitle(DemoReportFiles::path(QStringLiteral("RPTcustomers")));
    // "Criteria For" offers the cities; the chosen one is compared with the city column.
    Recordset cities;
    cities.Open(QStringLiteral("SELECT DISTINCT city FROM customers WHERE city IS NOT NULL ORDER BY city"), &cn);
    if (cities.RecordCount() > 0) {
        const VariantMatrix rows = cities.GetRows();
        VariantMatrix criteria(0, rows.UBound(2), 0, 1);
        for (int i = 0; i <= rows.UBound(2); ++i)
            criteria(i, 0) = criteria(i, 1) = rows(0, i);
        toolbar.setSelectionCriteria(criteria);
        toolbar.setSelectionField(QStringLiteral("city"));
    }
}

QHBoxLayout *CustomerFields::findRow(QWidget *form, QLineEdit *&find)
{
    find = new QLineEdit(form);
    find->setPlaceholderText(tr("code or start of the name, then Find"));
    auto *label = new QLabel(tr("Loo&k for:"), form);
    label->setBuddy(find);
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(find, 1);
    return row;
}
