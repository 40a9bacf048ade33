#pragma once

#include <QDialog>
#include <QPointer>
#include <QStringList>

#include <memory>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;

namespace PanelKestrin {

class Connection;
class OutputOptions;
class Recordset;
struct ReportFilterInput;

// The print query form ("Print Query Form") that a toolbar's Print button opens. It narrows
// the report before it runs: a value from "Criteria For", the field to group and sort on
// ("Group On"), and a from/to range on that field (two text boxes, or two date pickers for a
// date field), with the output options below in Frame2. Everything it shows comes from the
// shared report parameter block; nothing is passed to it.
//
// OK checks the range and runs the report: with ReportToPrint "D" the data report over an SQL
// statement built from the choices (RunDataReport), otherwise the report engine CrystalReport1
// with a selection formula, driven by member name. Screen output leaves the form open for
// another query; printer and file output close it.
//
// One form serves the whole process. It is loaded on demand (Load runs Form_Load, which fills
// the lists from the block) and unloaded when it closes, so the next Print loads it afresh.
class frmprint : public QDialog
{
    Q_OBJECT

public:
    // The one print query form, created on first use.
    static frmprint *instance();

    // Loads the form unless it is loaded: fills the lists from the report parameter block.
    // Errors (an unset srset, a field srset does not have, unassigned criteria) reach the
    // caller and leave the form unloaded.
    void Load();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void done(int result) override;

private:
    explicit frmprint(QWidget *parent = nullptr);
    ~frmprint() override;

    void createControls();
    void setFrame2Height(int twips);
    void Form_Load();
    void Form_Unload();
    void cmbfield_Click();
    void cmdcancel_Click();
    void cmdOK_Click();
    void optoutput_Click(int Index);
    void Form_KeyDown(qint16 KeyCode, qint16 Shift);
    // Whether the "Group On" field's value in srset's current record is a number: the range
    // boxes then take digits only.
    bool rangeTakesDigitsOnly() const;
    // Validation of OK; false when a message stopped the run. rangeIcon: the icon of the range
    // message.
    bool validateRange(int rangeIcon);
    ReportFilterInput filterInput() const;
    void runEngineReport();
    void RunDataReport();
    void unloadAfterOutput();
    // fieldlist(index): the field name behind "Group On" item index (error 9 outside it).
    QString fieldAt(int index) const;
    // The host's srset from the report parameter block; error 91 when it is not set.
    static Recordset *reportRecordset();

    bool m_loaded = false;
    QStringList fieldlist;
    QString grpfield;
    // The SQL path's connection and the data report's recordset ("rsReport"), children of the
    // form, replaced on every run and released when the form unloads.
    std::unique_ptr<Connection> m_connection;
    std::unique_ptr<Recordset> m_reportRecordset;
    // The report engine of the engine path, driven by member name only.
    QObject *CrystalReport1;

    QLabel *Label6;
    QComboBox *CmbCriteria;
    QLabel *Label7;
    QComboBox *cmbfield;
    QLabel *Label8;
    QLineEdit *txtfrom;
    QDateEdit *DTPicker1;
    QLabel *Label9;
    QLineEdit *txtto;
    QDateEdit *DTPicker2;
    OutputOptions *Frame2;
    QPushButton *cmdOK;
    QPushButton *cmdcancel;
};

} // namespace PanelKestrin
