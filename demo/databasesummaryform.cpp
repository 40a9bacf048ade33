#include "databasesummaryform.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/recordset.h>

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace PanelKestrin;

namespace {
const QStringList kTables = {QStringLiteral("customers"), QStringLiteral("items"),
                             QStringLiteral("orders"), QStringLiteral("order_lines")};

QTableWidget *makeTable(const QStringList &headers, QWidget *parent)
{
    auto *table = new QTableWidget(0, int(headers.size()), parent);
    table->setHorizontalHeaderLabels(headers);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    return table;
}

void setRow(QTableWidget *table, int row, const QStringList &cells)
{
    for (int c = 0; c < cells.size(); ++c)
        table->setItem(row, c, new QTableWidgetItem(cells.at(c)));
}
} // namespace

DatabaseSummaryForm::DatabaseSummaryForm(Connection &connection, QWidget *parent)
    : QWidget(parent), m_connection(connection)
{
    setWindowTitle(tr("Database summary"));
    auto *layout = new QVBoxLayout(this);
    auto *tablesLabel = new QLabel(tr("&Tables"), this);
    m_tables = makeTable({tr("Table"), tr("Rows"), tr("Columns")}, this);
    tablesLabel->setBuddy(m_tables);
    auto *columnsLabel = new QLabel(tr("&Columns of the selected table"), this);
    m_columns = makeTable({tr("Name"), tr("Type"), tr("DefinedSize"), tr("Precision"),
                           tr("NumericScale"), tr("Attributes")}, this);
    columnsLabel->setBuddy(m_columns);
    layout->addWidget(tablesLabel);
    layout->addWidget(m_tables, 1);
    layout->addWidget(columnsLabel);
    layout->addWidget(m_columns, 2);

    m_tables->setRowCount(int(kTables.size()));
    for (int row = 0; row < kTables.size(); ++row) {
        Recordset rs;
        rs.Open(kTables.at(row), &m_connection);
        setRow(m_tables, row, {kTables.at(row), QString::number(rs.RecordCount()),
                               QString::number(rs.Fields().Count())});
    }
    connect(m_tables, &QTableWidget::currentCellChanged, this, [this](int row) {
        guardEvent(QStringLiteral("DatabaseSummaryForm.showColumns"), [&] {
            if (row >= 0)
                showColumns(kTables.at(row));
        });
    });
    m_tables->setCurrentCell(0, 0);
    resize(640, 520);
}

void DatabaseSummaryForm::showColumns(const QString &table)
{
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM %1 WHERE 1 = 0").arg(table), &m_connection);
    const int count = rs.Fields().Count();
    m_columns->setRowCount(count);
    for (int i = 0; i < count; ++i) {
        const Field field = rs.Fields().Item(i);
        setRow(m_columns, i, {field.Name(), QString::number(field.Type()), QString::number(field.DefinedSize()),
                              QString::number(field.Precision()), QString::number(field.NumericScale()),
                              QString::number(field.Attributes())});
    }
    m_columns->resizeColumnsToContents();
}
