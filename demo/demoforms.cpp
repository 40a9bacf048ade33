#include "demoforms.h"

#include "customerbrowseform.h"
#include "customerform.h"
#include "databasesummaryform.h"
#include "orderlinesform.h"

QList<DemoForm> demoForms()
{
    return {
        {QObject::tr("Database summary"),
         QObject::tr("The demo's tables with their row counts and the column descriptions the controls read."),
         [](DemoContext &context) -> QWidget * { return new DatabaseSummaryForm(*context.connection); }},
        {QObject::tr("Customers"),
         QObject::tr("The transaction toolbar: add, edit, delete, save and find customers; the form answers its events."),
         [](DemoContext &context) -> QWidget * { return new CustomerForm(*context.connection); }},
        {QObject::tr("Customer browser"),
         QObject::tr("The navigation toolbar moving through the customers one record at a time, with add, edit and delete."),
         [](DemoContext &context) -> QWidget * { return new CustomerBrowseForm(*context.connection); }},
        {QObject::tr("Order lines"),
         QObject::tr("The lines of one order in the editable grid with the grid toolbar: edit, add, delete, find and save."),
         [](DemoContext &context) -> QWidget * { return new OrderLinesForm(*context.connection); }},
    };
}
