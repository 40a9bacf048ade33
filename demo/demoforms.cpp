#include "demoforms.h"

#include "customerbrowseform.h"
#include "customerform.h"
#include "databasesummaryform.h"
#include "orderlinesform.h"

QList<DemoForm> demoForms()
{
    return {
        {QObject::tr("Database summary"),
         QObject::tr("The demo's tables with their row counts, and the column descriptions the controls read from "
                     "the schema. Try: select a table to see its columns' types, sizes and nullability."),
         [](DemoContext &context) -> QWidget * { return new DatabaseSummaryForm(*context.connection); }},
        {QObject::tr("Customers"),
         QObject::tr("One customer at a time under the transaction toolbar, with date boxes for the dates. Try: Edit, "
                     "change the name and Save; Add a customer; Esc to undo; Print the customer list to the screen."),
         [](DemoContext &context) -> QWidget * { return new CustomerForm(*context.connection); }},
        {QObject::tr("Customer browser"),
         QObject::tr("The navigation toolbar over the customers in the order they were entered. Try: First, Prev, "
                     "Next and Last; Add a customer and see it come last; Delete one without orders."),
         [](DemoContext &context) -> QWidget * { return new CustomerBrowseForm(*context.connection); }},
        {QObject::tr("Order lines"),
         QObject::tr("One order's lines in the editable grid under the grid toolbar. Try: pick an order, Edit, change "
                     "a quantity, Enter on the last cell to add a line, then Save; Print the lines, or choose an output "
                     "in the print options and press Order report."),
         [](DemoContext &context) -> QWidget * { return new OrderLinesForm(*context.connection); }},
    };
}
