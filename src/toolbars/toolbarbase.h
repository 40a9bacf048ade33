#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/variantmatrix.h>

#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QWidget>

#include <memory>

class QAbstractButton;

namespace PanelKestrin {

class PropertyBag;
class Recordset;
class ToolbarBasePrivate;
struct ToolbarButton;

// What the three command toolbars share: one row of buttons Command1_0 ... Command1_n in the
// frame Frame1, one picture per button from the toolbar's image list, the enabling string
// cmdenable, the state helper every command switches modes with, the access keys (Esc presses
// Undo, Alt+W focuses Save), the design-time properties kept in the host form's property bag,
// and the report properties, which all read and write the one process-wide report parameter
// block (reportparameters.h). Each toolbar adds its buttons' commands in Command1_Click.
class PANELKESTRIN_EXPORT ToolbarBase : public QWidget
{
    Q_OBJECT
    // A form file (Designer, QUiLoader) sets cmdenable as a design-time value: stored, never
    // applied to the buttons, as a property-bag read. The host's run-time assignment is
    // setcmdenable, which late binding and Dispatch call.
    Q_PROPERTY(QString cmdenable READ cmdenable WRITE setCmdenable)
    // The report properties exist at run time only: a form file never carries them, so that
    // loading a form cannot overwrite the report parameters every toolbar shares.
    Q_PROPERTY(PanelKestrin::Recordset *srset READ srset WRITE setsrset DESIGNABLE false)
    Q_PROPERTY(QString sortcaptions READ sortcaptions WRITE setsortcaptions DESIGNABLE false)
    Q_PROPERTY(QString sortfields READ sortfields WRITE setsortfields DESIGNABLE false)
    Q_PROPERTY(QString selquery READ selquery WRITE setselquery DESIGNABLE false)
    Q_PROPERTY(QString rptheading READ rptheading WRITE setrptheading DESIGNABLE false)
    Q_PROPERTY(QString rpttitle READ rpttitle WRITE setrpttitle DESIGNABLE false)
    Q_PROPERTY(PanelKestrin::VariantMatrix SelectionCriteria READ SelectionCriteria WRITE setSelectionCriteria DESIGNABLE false)
    Q_PROPERTY(QString SelectionField READ SelectionField WRITE setSelectionField DESIGNABLE false)
    Q_PROPERTY(PanelKestrin::VariantMatrix RptParameter READ RptParameter WRITE setRptParameter DESIGNABLE false)

public:
    ~ToolbarBase() override;

    // The enabling string as last given or loaded; it does not follow later mode changes.
    QString cmdenable() const;
    // Stores the string, then enables button i unless character i + 1 is "0" (a missing
    // character enables, extra characters are ignored), and notifies "cmdenable".
    Q_INVOKABLE void setcmdenable(const QString &cmdenable);
    // What a form file (.ui, compiled or loaded) sets for a cmdenable given in Designer: a
    // design-time value, stored like a property-bag read and never applied to the buttons.
    void setCmdenable(const QString &cmdenable);

    // Presses button Index from code. Errors reach the caller as RuntimeError (the navigation
    // toolbar reports its own); a click or an access key reports them instead.
    Q_INVOKABLE virtual void Command1_Click(qint16 Index) = 0;

    // Container services: a new instance, loading from and saving to the host's property bag.
    Q_INVOKABLE void InitProperties();
    void ReadProperties(const PanelKestrin::PropertyBag &PropBag);
    void WriteProperties(PanelKestrin::PropertyBag &PropBag) const;

    // Report properties: every Get reads the shared block, every Let or Set replaces the shared
    // value and notifies under the name noted (rptheading and SelectionField notify nothing,
    // RptParameter notifies "SelectionCriteria"). Arrays are copied in and out whole.
    Recordset *srset() const;
    void setsrset(PanelKestrin::Recordset *srset);
    QString sortcaptions() const;
    void setsortcaptions(const QString &sortcaptions);
    QString sortfields() const;
    void setsortfields(const QString &sortfields);
    QString selquery() const;
    void setselquery(const QString &selquery);
    QString rptheading() const;
    void setrptheading(const QString &rptheading);
    QString rpttitle() const;
    void setrpttitle(const QString &rpttitle);
    VariantMatrix SelectionCriteria() const;
    void setSelectionCriteria(const PanelKestrin::VariantMatrix &SelectionCriteria);
    QString SelectionField() const;
    void setSelectionField(const QString &SelectionField);
    VariantMatrix RptParameter() const;
    void setRptParameter(const PanelKestrin::VariantMatrix &RptParameter);

Q_SIGNALS:
    // The container's property-changed notification, under the property's published name.
    void PropertyChanged(const QString &PropertyName);

protected:
    // Builds the row from buttons (index i = button i) and starts the toolbar: button i gets
    // image-list item i + 1, then the shared report parameters are reset. undoIndex and
    // saveIndex are the buttons the access keys press and focus.
    ToolbarBase(const char *context, const ToolbarButton *buttons, int count, qint16 undoIndex,
                qint16 saveIndex, QWidget *parent);

    QAbstractButton *Command1(int Index) const;
    qint16 lastIndex() const;
    bool buttonEnabled(int Index) const;

    // Enables exactly the listed buttons and disables the others (Enable true), or the reverse
    // (Enable false). List elements are compared by value with each index.
    void SetButtonStates(bool Enable, const QVariantList &Buttons);
    // The state a button gets from SetButtonStates: the plain value unless a toolbar gates it.
    virtual bool gatedState(int Index, bool plain, bool listed) const;

    // Access keys: 27 presses Undo when it is enabled, 119 moves the focus to Save.
    void AccessKeyPress(qint16 KeyAscii);

    // The Print hand-off after printclick: loads the one print query form, places it 350 twips
    // below the host form's top at the host's left, and shows it modally.
    void showPrintForm();
    // The host form (the toolbar's window) and the calls made on it by name.
    QWidget *hostForm() const;
    QVariant callHost(const QString &member) const;
    void unloadHostForm() const;
    // The shared srset; raises RuntimeError 91 when it is not set.
    Recordset *recordset() const;
    // ReportToPrint is write-only and offered by two of the toolbars.
    void storeReportToPrint(const QString &ReportToPrint);

    // The Source of the errors the toolbar raises ("PanelKestrin.TrnControl" ...).
    QString errorSource() const;
    // Gives the buttons one common size after their fonts changed.
    void fitButtons();
    // Runs a user event's command so that no error reaches the event loop.
    void runGuarded(qint16 Index);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    friend class ToolbarBasePrivate;
    std::unique_ptr<ToolbarBasePrivate> const d;
};

} // namespace PanelKestrin
