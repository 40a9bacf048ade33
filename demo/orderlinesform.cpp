#include "orderlinesform.h"

#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/twips.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace PanelKestrin;

OrderLinesForm::OrderLinesForm(Connection &connection, QWidget *parent)
    : QWidget(parent), m_grid(new gridcontrol(this)), m_lines(new Recordset(this))
{
    setWindowTitle(tr("Order lines"));
    m_grid->setObjectName(QStringLiteral("OrderLinesGrid"));
    m_lines->Open(QStringLiteral("SELECT l.order_no, l.line_no, l.item_code, i.description, l.quantity, "
                                 "l.unit_price, l.discount, l.delivery_date "
                                 "FROM order_lines l JOIN items i ON i.item_code = l.item_code "
                                 "ORDER BY l.order_no, l.line_no"),
                  &connection);

    auto *layout = new QVBoxLayout(this);
    auto *heading = new QLabel(tr("All order lines (%1). Browse with the arrow keys or the page buttons.")
                                   .arg(m_lines->RecordCount()), this);
    layout->addWidget(heading);
    layout->addWidget(m_grid, 1);
    auto *buttons = new QHBoxLayout;
    const auto addButton = [this, buttons](const QString &caption, void (gridcontrol::*move)()) {
        auto *button = new QPushButton(caption, this);
        connect(button, &QPushButton::clicked, this, [this, move] {
            guardEvent(QStringLiteral("OrderLinesForm.page"), [this, move] { (m_grid->*move)(); });
        });
        buttons->addWidget(button);
    };
    addButton(tr("&First"), &gridcontrol::TopRow);
    addButton(tr("&Previous page"), &gridcontrol::Prevpage);
    addButton(tr("&Next page"), &gridcontrol::Nextpage);
    addButton(tr("&Last"), &gridcontrol::LastRow);
    buttons->addStretch();
    layout->addLayout(buttons);
    resize(TwipsToPixelsX(12000, this), TwipsToPixelsY(7200, this));

    m_grid->setGridHeader(tr("Order,Line,Item,Description,Qty,Price,Disc %,Delivery"));
    m_grid->setNotEditableFields(QStringLiteral("order_no,line_no"));
    m_grid->MakeStruct(m_lines);
    // Read-only until editing is offered: every column disabled keeps the editor closed.
    m_grid->setDisableCol(QStringLiteral("1,2,3,4,5,6,7,8"));
    m_grid->setInvokeHelpCol(QString());
    m_grid->setMandatoryCol(QString());
    m_grid->MakeGridStructure();
    m_grid->FixColSizes({0, 900, 600, 1100, 3000, 700, 1000, 800, 1200});
}

OrderLinesForm::~OrderLinesForm() = default;
