#pragma once

#include <QDialog>
#include <QPointer>
#include <QStringList>

class QComboBox;
class QDateEdit;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;

namespace PanelKestrin {

// The print query form ("Print Query Form") that a toolbar's Print button opens. It narrows
// the report before it runs: a value from "Criteria For", the field to group and sort on
// ("Group On"), and a from/to range on that field (two text boxes, or two date pickers for a
// date field), with the output options below in Frame2. Everything it shows comes from the
// shared report parameter block; nothing is passed to it.
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
    bool isLoaded() const { return m_loaded; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void done(int result) override;

private:
    explicit frmprint(QWidget *parent = nullptr);

    void createControls();
    void setFrame2Height(int twips);
    void Form_Load();
    void Form_Unload();
    void cmbfield_Click();
    void cmdcancel_Click();
    // fieldlist(index): the field name behind "Group On" item index (error 9 outside it).
    QString fieldAt(int index) const;

    bool m_loaded = false;
    QStringList fieldlist;
    QString grpfield;

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
    QFrame *Frame2;
    QRadioButton *optoutput[3];
    QLabel *Label2;
    QLineEdit *txtfrompage;
    QLabel *Label3;
    QLineEdit *txttopage;
    QLabel *Label1;
    QLineEdit *txtnocopies;
    QScrollBar *UpDown1;
    QLabel *Label5;
    QComboBox *cmbfiletype;
    QLabel *Label4;
    QLineEdit *txtfilename;
    QPushButton *cmdfilehelp;
    QPushButton *cmdprintsetup;
    QPushButton *cmdOK;
    QPushButton *cmdcancel;
};

} // namespace PanelKestrin
