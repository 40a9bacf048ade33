#include "orderlinesform.h"

#include "demoreportfiles.h"
#include "orderlinestable.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/printsetup.h>
#include <PanelKestrin/reportengine.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/twips.h>

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

using namespace PanelKestrin;

namespace {

using Column = OrderLinesTable::Column;

// Toolbar modes for a freshly shown order: browsing its lines, or only Edit and Quit when it
// has none.
const QString kBrowseMode = QStringLiteral("111110110");
const QString kEmptyMode = QStringLiteral("000010010");

QString gridColumn(Column column)
{
    return QString::number(int(column) + 1);
}

bool wholeNumber(double value)
{
    return std::floor(value) == value;
}

} // namespace

OrderLinesForm::OrderLinesForm(Connection &connection, QWidget *parent)
    : QWidget(parent), m_connection(connection)
{
    setWindowTitle(tr("Order lines"));
    m_orders = new QComboBox(this);
    m_orders->setObjectName(QStringLiteral("cmbOrder"));
    auto *orderLabel = new QLabel(tr("&Order:"), this);
    orderLabel->setBuddy(m_orders);
    m_summary = new QLabel(this);
    m_toolbar = new GridPanel(this);
    m_grid = new gridcontrol(this);
    m_grid->setObjectName(QStringLiteral("OrderLinesGrid"));
    auto *hint = new QLabel(tr("Edit opens the lines. While the grid has the focus, Add, Delete and Find stand under "
                               "it (or right-click a cell); Enter on the last cell adds a line, and a blank line "
                               "number takes the next free one. Save writes every change, Undo drops them."),
                            this);
    hint->setWordWrap(true);

    auto *top = new QHBoxLayout;
    top->addWidget(orderLabel);
    top->addWidget(m_orders, 1);
    top->addWidget(m_summary);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_toolbar);
    layout->addWidget(m_grid, 1);
    layout->addWidget(hint);

    // The order's own report: the print options panel beside the button that runs it.
    m_report = new ReportEngine(this);
    m_printSetup = new PrintSetup(this);
    m_printSetup->setObjectName(QStringLiteral("PrintSetup1"));
    m_printSetup->setCrystalReportObj(m_report);
    auto *reportButton = new QPushButton(tr("Order &report"), this);
    reportButton->setObjectName(QStringLiteral("cmdReport"));
    connect(reportButton, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("OrderLinesForm.cmdReport_Click"), [this] { cmdReport_Click(); }); });
    auto *reportRow = new QHBoxLayout;
    reportRow->addWidget(m_printSetup);
    reportRow->addWidget(reportButton, 0, Qt::AlignBottom);
    reportRow->addStretch(1);
    layout->addLayout(reportRow);

    m_toolbar->setUserGridName(m_grid);
    m_toolbar->setsrset(&m_lines);
    m_grid->bShowMenu = true;
    m_grid->setGridHeader(tr("Line,Item,Qty,Unit price,Disc %,Delivery"));
    // Line numbers of stored lines are their keys: typed on added rows only.
    m_grid->setNotEditableFields(QStringLiteral("line_no"));
    m_grid->setNotBlankCols(QStringLiteral("item_code,quantity"));
    m_grid->setDisableCol(QString());
    m_grid->setInvokeHelpCol(QString());
    m_grid->setMandatoryCol(gridColumn(Column::ItemCode) + QLatin1Char(',') + gridColumn(Column::Quantity));
    connect(m_grid, &gridcontrol::ValidateRow, this, [this](qint32 &Row, qint16 &Col, QVariant &value, bool &Cancel) {
        guardEvent(QStringLiteral("OrderLinesForm.ValidateRow"), [&] { validateCell(Row, Col, value, Cancel); });
    });
    connectToolbar();

    loadItems();
    loadOrders();
    connect(m_orders, &QComboBox::currentIndexChanged, this,
            [this] { guardEvent(QStringLiteral("OrderLinesForm.cmbOrder"), [this] { showOrder(); }); });
    resize(TwipsToPixelsX(9600, this), TwipsToPixelsY(6600, this));
    showOrder();
}

OrderLinesForm::~OrderLinesForm() = default;

void OrderLinesForm::connectToolbar()
{
    connect(m_toolbar, &GridPanel::editclick, this,
            [this] { guardEvent(QStringLiteral("OrderLinesForm.editclick"), [this] { setEditing(true); }); });
    // The toolbar has already had the grid commit its pending cell (SaveLastCol).
    connect(m_toolbar, &GridPanel::saveclick, this,
            [this] { guardEvent(QStringLiteral("OrderLinesForm.saveclick"), [this] { save(); }); });
    connect(m_toolbar, &GridPanel::CancelClick, this,
            [this] { guardEvent(QStringLiteral("OrderLinesForm.CancelClick"), [this] { reloadLines(); }); });
    connect(m_toolbar, &GridPanel::printclick, this, [this] {
        guardEvent(QStringLiteral("OrderLinesForm.printclick"), [this] { setReportParameters(); });
    });
}

void OrderLinesForm::loadOrders()
{
    Recordset orders;
    orders.Open(QStringLiteral("SELECT o.order_no, c.cust_name FROM orders o "
                               "JOIN customers c ON c.cust_code = o.cust_code ORDER BY o.order_no"),
                &m_connection);
    const QSignalBlocker quiet(m_orders);
    m_orders->clear();
    for (; !orders.adoEOF(); orders.MoveNext()) {
        const int number = CLng(orders.Fields().Item(0).Value());
        m_orders->addItem(QStringLiteral("%1 - %2").arg(number).arg(CStr(orders.Fields().Item(1).Value())), number);
    }
}

void OrderLinesForm::loadItems()
{
    Recordset items;
    items.Open(QStringLiteral("SELECT item_code FROM items"), &m_connection);
    m_items.clear();
    for (; !items.adoEOF(); items.MoveNext())
        m_items.insert(CStr(items.Fields().Item(0).Value()));
}

int OrderLinesForm::orderNo() const
{
    return m_orders->currentData().toInt();
}

void OrderLinesForm::showOrder()
{
    reloadLines();
    m_toolbar->setcmdenable(m_loadedLines.isEmpty() ? kEmptyMode : kBrowseMode);
}

void OrderLinesForm::reloadLines()
{
    if (m_lines.State())
        m_lines.Close();
    m_lines.Open(OrderLinesTable::selectStatement(orderNo()), &m_connection);
    m_grid->MakeStruct(&m_lines);
    m_grid->MakeGridStructure();
    m_grid->FixColSizes({0, 700, 1500, 800, 1200, 900, 1500});
    const VariantMatrix data = m_grid->DataArray();
    m_loadedLines = OrderLinesTable::loadedLineNumbers(data, m_grid->RowStatusArray());
    double value = 0;
    if (!m_loadedLines.isEmpty())
        for (int i = 0; i <= data.UBound(2); ++i)
            value += OrderLinesTable::numberOf(data(Column::Quantity, i))
                     * OrderLinesTable::numberOf(data(Column::UnitPrice, i))
                     * (1 - OrderLinesTable::numberOf(data(Column::Discount, i)) / 100);
    const int count = int(m_loadedLines.size());
    m_summary->setText((count == 1 ? tr("1 line, value %1") : tr("%1 lines, value %2").arg(count))
                           .arg(value, 0, 'f', 2));
    setEditing(false);
}

// Browsing leaves the grid closed and the order list open; editing the reverse, so that
// changes are never dropped by choosing another order.
void OrderLinesForm::setEditing(bool editing)
{
    m_grid->setGridEnable(editing);
    m_orders->setEnabled(!editing);
}

void OrderLinesForm::save()
{
    const QStringList statuses = m_grid->RowStatusArray();
    const OrderLinesTable::Changes changes =
        OrderLinesTable::changesFrom(m_grid->DataArray(), statuses, m_loadedLines);
    if (!changes.problem.isEmpty()) {
        // A blank last row dropped from the data but still on screen cannot be edited further.
        const bool gridIntact = m_grid->MaxRowNumber() - 1 == statuses.size();
        MsgBox(changes.problem + QStringLiteral("\n\n")
                   + (gridIntact ? tr("Nothing was saved. Correct the line and press Save again, or Undo to drop "
                                      "the changes.")
                                 : tr("Nothing was saved; the lines are read again from the database.")),
               vbExclamation, tr("Order lines"));
        if (gridIntact)
            resumeEditing();
        else
            reloadLines();
        return;
    }
    try {
        OrderLinesTable::write(m_connection, orderNo(), changes);
    } catch (const RuntimeError &error) {
        MsgBox(tr("The lines of order %1 were not saved:\n%2").arg(orderNo()).arg(error.Description()),
               vbExclamation, tr("Order lines"));
    }
    // Saved or not, the grid shows what the database holds.
    reloadLines();
}

void OrderLinesForm::resumeEditing()
{
    QTimer::singleShot(0, this, [this] {
        guardEvent(QStringLiteral("OrderLinesForm.resumeEditing"),
                   [this] { m_toolbar->Command1_Click(GridPanel::btnedit); });
    });
}

bool OrderLinesForm::refuse(const QString &message, bool &Cancel)
{
    MsgBox(message, vbExclamation, tr("Order lines"));
    Cancel = true;
    return false;
}

// Checks a cell's value as the user leaves it; a refused value keeps the user in the cell.
// An item or quantity may stay blank only on the added row at the end, which is still being
// filled in (or is left blank and not saved).
void OrderLinesForm::validateCell(qint32 row, qint16 col, const QVariant &value, bool &Cancel)
{
    const QStringList statuses = m_grid->RowStatusArray();
    const bool added = statuses.value(row - 1) == QLatin1String("A");
    const bool fillingIn = added && row == m_grid->MaxRowNumber() - 1;
    const double number = OrderLinesTable::numberOf(value);
    const QString text = OrderLinesTable::textOf(value);
    switch (col) {
    case Column::LineNo: {
        if (!added || number == 0)
            return;
        if (!wholeNumber(number) || number < 1 || number > 32767)
            refuse(tr("A line number is a whole number from 1 to 32767; leave it blank for the next free number."),
                   Cancel);
        const VariantMatrix data = m_grid->DataArray();
        for (int i = 0; i <= data.UBound(2) && !Cancel; ++i)
            if (i != row - 1 && OrderLinesTable::numberOf(data(Column::LineNo, i)) == number)
                refuse(tr("Line %1 is already on this order.").arg(number), Cancel);
        return;
    }
    case Column::ItemCode:
        if (text.isEmpty() && !fillingIn)
            refuse(tr("Every line needs an item; delete the line to remove it."), Cancel);
        else if (!text.isEmpty() && !m_items.contains(text))
            refuse(tr("There is no item %1.").arg(text), Cancel);
        return;
    case Column::Quantity:
        if (number < 0 || !wholeNumber(number))
            refuse(tr("A quantity is a whole number of at least 1."), Cancel);
        else if (number == 0 && !fillingIn)
            refuse(tr("Every line needs a quantity of at least 1; delete the line to remove it."), Cancel);
        return;
    case Column::UnitPrice:
        if (number < 0)
            refuse(tr("A unit price cannot be negative; leave it blank for the item's price."), Cancel);
        return;
    case Column::Discount:
        if (number < 0 || number > 100)
            refuse(tr("A discount is a percentage from 0 to 100."), Cancel);
        return;
    case Column::DeliveryDate:
        if (!text.isEmpty() && !IsDate(text))
            refuse(tr("\"%1\" is not a date: type it the way today's date is written, %2.")
                       .arg(text, CStr(QDate::currentDate())),
                   Cancel);
        return;
    default:
        return;
    }
}

// The print query form reads the shared report parameters: this order's lines as the data
// report's ready-made "prntxt" lines, grouped by line, item or delivery date. The columns are
// padded to fixed widths and joined with "+", which the database kind of the demo turns into
// "||". No criteria are offered: on this path the chosen criteria value would also become the
// order term.
void OrderLinesForm::setReportParameters()
{
    m_toolbar->setsrset(&m_lines);
    m_toolbar->setsortcaptions(tr("Line,Item,Delivery"));
    m_toolbar->setsortfields(QStringLiteral("line_no,item_code,delivery_date"));
    const QString pad = QStringLiteral(" + '            '");
    m_toolbar->setselquery(
        QStringLiteral("SELECT prntxt FROM (SELECT line_no, item_code, delivery_date, "
                       "substr(line_no%1, 1, 6) + substr(item_code%1, 1, 10) + substr(quantity%1, 1, 10) "
                       "+ substr(unit_price%1, 1, 12) + COALESCE(delivery_date + '', '') AS prntxt "
                       "FROM order_lines WHERE order_no = %2) order_lines")
            .arg(pad)
            .arg(orderNo()));
    m_toolbar->setrptheading(QStringLiteral("%1%2%3%4%5")
                                 .arg(tr("Line"), -6)
                                 .arg(tr("Item"), -10)
                                 .arg(tr("Qty"), -10)
                                 .arg(tr("Unit price"), -12)
                                 .arg(tr("Delivery")));
    m_toolbar->setrpttitle(tr("Lines of order %1").arg(m_orders->currentText()));
    // The grid toolbar has no ReportToPrint of its own; another form may have chosen the engine.
    reportParameters().ReportToPrint = QStringLiteral("D");
    VariantMatrix noCriteria(0, 1, 0, 1);
    noCriteria(0, 0) = QString();
    m_toolbar->setSelectionCriteria(noCriteria);
}

// The form's own report: the shipped order-lines report file for the order shown, run by the
// report engine with the output chosen in the print options panel beside the button (the panel
// writes it into the engine when the focus leaves it for the button).
void OrderLinesForm::cmdReport_Click()
{
    m_report->setReportFileName(DemoReportFiles::path(QStringLiteral("order-lines.rpt")));
    // The report's rows are titled "<order no>   <customer>".
    m_report->setSelectionFormula(QStringLiteral("{order_lines.order_title} like '%1   *'").arg(orderNo()));
    m_report->setAction(1);
}

// The report parameters are one set for the whole application: the form claims srset whenever
// it becomes the active window.
bool OrderLinesForm::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        guardEvent(QStringLiteral("OrderLinesForm.Activate"), [this] { m_toolbar->setsrset(&m_lines); });
    return QWidget::event(event);
}
