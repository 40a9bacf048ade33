// The print query form's data report path: the SQL statement built from the user's choices,
// opened on a read-only connection of its own, and the generic data report over its rows.
#include "printing/frmprint_p.h"

#include "printing/datareport1_p.h"
#include "printing/outputoptions_p.h"
#include "printing/reportfilters_p.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/conversions.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/waitcursor.h>

#include <optional>

namespace PanelKestrin {

namespace {

// The key column of the report's table (the first of them), empty when it has none.
QString primaryKeyOf(Connection &connection, const QString &table)
{
    std::unique_ptr<Recordset> keys =
        connection.OpenSchema(Connection::SchemaPrimaryKeys, {QVariant(), QVariant(), table});
    const QString key = keys->adoEOF() ? QString() : CStr(keys->Fields().Item(3).Value());
    keys->Close();
    return key;
}

} // namespace

// The statement runs on a connection opened in the database's read-only mode, as one
// statement: whatever the user typed into the range or the criteria can neither change data
// nor run a second statement. The recordset is static and client-side; an empty one says so
// and keeps the form open.
void frmprint::RunDataReport()
{
    const ReportParameters &block = reportParameters();
    const ConnectionSettings &settings = ConnectionSettings::instance();
    std::optional<WaitCursor> wait;
    wait.emplace();
    m_reportRecordset.reset();
    m_connection = std::make_unique<Connection>(this);
    m_connection->Open(settings.ConnectString() + QStringLiteral(";Mode=Read"), QString(), QString(), -1);

    const SqlReportFilter filter = sqlReportFilter(filterInput());
    QString primaryKey;
    if (settings.DatabaseKind() == 1)
        primaryKey = primaryKeyOf(*m_connection, block.srset ? block.srset->DataMember() : QString());
    const QString statement = sqlReportStatement(block.selquery, filter, settings.DatabaseKind(), primaryKey);

    m_reportRecordset = std::make_unique<Recordset>(this);
    m_reportRecordset->setObjectName(QStringLiteral("rsReport"));
    m_reportRecordset->setCursorType(3);
    m_reportRecordset->setCursorLocation(3);
    m_reportRecordset->setLockType(3);
    m_reportRecordset->setActiveConnection(m_connection.get());
    m_reportRecordset->Open(statement, nullptr, -1, -1, Recordset::CommandText);
    wait.reset();
    if (m_reportRecordset->adoEOF()) {
        MsgBox(tr("No Records found..."), vbExclamation);
        return;
    }

    DataReport1 report(m_reportRecordset.get());
    const int destination = Frame2->destination();
    if (destination == OutputOptions::Screen) {
        report.Show(1);
        return;
    }
    const qint16 fromPage = Frame2->fromPage();
    const qint16 toPage = Frame2->toPage();
    if (destination == OutputOptions::Printer)
        report.PrintReport(false, DataReport1::RangeFromTo, fromPage, toPage);
    else
        report.ExportReport(QStringLiteral("key_def_Text"), Frame2->fileName(), true, false, DataReport1::RangeFromTo,
                            fromPage, toPage);
    unloadAfterOutput();
}

} // namespace PanelKestrin
