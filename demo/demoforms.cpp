#include "demoforms.h"

#include "databasesummaryform.h"

QList<DemoForm> demoForms()
{
    return {
        {QObject::tr("Database summary"),
         QObject::tr("The demo's tables with their row counts and the column descriptions the controls read."),
         [](DemoContext &context) -> QWidget * { return new DatabaseSummaryForm(*context.connection); }},
    };
}
