#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QObject>
#include <QPointer>
#include <QString>

namespace PanelKestrin {

class Recordset;

// The generic data report: the ready-made lines of a recordset's "prntxt" field, one under the
// other in the fixed-pitch report font, so that lines padded with blanks keep their columns.
// Above them the report header (first page): the site's letterhead (the organisation's
// abbreviation, two empty lines, the town; see docs/report-files.md for where a site sets
// them), the report title (rpttitle of the report parameters) upper-cased and "Date:" with
// today as dd/mm/yyyy; on every page the column heading line (rptheading, upper-cased) between
// two rules, and "Page: <n>" at the foot. The title and heading are read when the report is
// laid out.
class PANELKESTRIN_EXPORT DataReport1 : public QObject
{
    Q_OBJECT

public:
    // Page ranges of PrintReport and ExportReport.
    enum PageRangeConstants { RangeAllPages = 0, RangeFromTo = 1 };
    Q_ENUM(PageRangeConstants)

    // The report over recordset (not owned): every row from the first, whatever the cursor's
    // position; the cursor is left after the last row.
    explicit DataReport1(Recordset *recordset = nullptr, QObject *parent = nullptr);
    ~DataReport1() override;

    Recordset *DataSource() const { return m_recordset; }
    void setDataSource(Recordset *recordset) { m_recordset = recordset; }

    // Opens the preview window; modal 1 waits (through the modal runner) until it is closed,
    // 0 leaves it open and returns. Raises RuntimeError 91 without a recordset, the recordset's
    // 3704 when it is closed, and 3265 when it has no "prntxt" field; nothing is shown then.
    Q_INVOKABLE void Show(int modal = 0);

    // Prints on the default printer (showDialog: the printer dialog first, whose cancel prints
    // nothing); range RangeFromTo prints pages pageFrom to pageTo (from 1, inclusive; see
    // printReport for the ranges refused), RangeAllPages every page.
    Q_INVOKABLE void PrintReport(bool showDialog = false, int range = RangeAllPages, int pageFrom = 0,
                                 int pageTo = 0);

    // Writes the report to fileName in the format formatKey: "key_def_Text" (plain text, a form
    // feed between pages) is the one format. showDialog asks for the file name first (a cancel
    // writes nothing); without overwrite an existing file raises RuntimeError 58. An unknown
    // format key raises 5 naming it; a file that cannot be written 75.
    Q_INVOKABLE void ExportReport(const QString &formatKey, const QString &fileName, bool overwrite = true,
                                  bool showDialog = false, int range = RangeAllPages, int pageFrom = 0,
                                  int pageTo = 0);

private:
    QPointer<Recordset> m_recordset;
};

// Where the letterhead lines come from: HKEY_CURRENT_USER, this key, values "Organisation" and
// "Town".
inline constexpr char DataReportSettingsKey[] = "Software\\PanelKestrin\\Reports";

} // namespace PanelKestrin
