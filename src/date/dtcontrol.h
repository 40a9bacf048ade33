#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QColor>
#include <QDate>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace PanelKestrin {

class DTControlPrivate;

// A date entry box: the masked edit box MaskEdBox1, into which the user types a date digit by
// digit, with the drop-down calendar DTPicker1 beside it ("Select Date from Calendar."), both
// in the frame fraDate.
//
// The mask follows the user's date separator, read once at creation from the regional
// settings (GetRegValue, "\Control Panel\International", "sDate"; "/" when there is none):
// "##/##/####" with "/", "##.##.####" with ".". Day and month come first in the order set by
// dDateFormat (day first unless told otherwise), the four-digit year last. Dates are shown in
// that order with that separator, whether typed, picked from the calendar or set through value.
//
// Up and Down move the focus to the previous and next control once the day and month typed
// are possible; Tab and Enter on a complete date outside the calendar's MinDate..MaxDate range
// are swallowed. When the user moves to another control of the same form, the focus is held in
// the mask while the entry is not acceptable: a complete date outside the range, a wrong day or
// month in an incomplete date, a year not begun or before 1899. A complete text that spells no
// date (31/06/2010) is not held; reading value then raises error 5. Nothing is shown to the
// user but the caret, which goes to position 0 for a wrong day and 3 for a wrong month in
// either order. A hidden or disabled control holds nothing.
class PANELKESTRIN_EXPORT DTControl : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QDate value READ value WRITE setvalue)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(QColor ForeColor READ ForeColor WRITE setForeColor)
    Q_PROPERTY(qint16 BorderStyle READ BorderStyle WRITE setBorderStyle)
    Q_PROPERTY(QObject *DataSource READ DataSource WRITE setDataSource DESIGNABLE false)
    Q_PROPERTY(QString DataMember READ DataMember WRITE setDataMember)
    Q_PROPERTY(QString DataFieldName READ DataFieldName WRITE setDataFieldName)

public:
    explicit DTControl(QWidget *parent = nullptr);
    ~DTControl() override;

    // The day/month order: "DD/MM/YYYY" (also when empty) reads day first, any other text
    // month first. Stored in upper case, unchecked.
    Q_INVOKABLE void setdDateFormat(const QString &dDateFormat);
    // The calendar's range, which the checks read back from the calendar.
    Q_INVOKABLE void setMaxdate(const QDate &Maxdate);
    Q_INVOKABLE void setMindate(const QDate &Mindate);

    // The date in the mask; the empty date 12/30/1899 while the mask is incomplete. A complete
    // mask that spells no date (31/04/2005) raises RuntimeError 5.
    QDate value() const;
    // Shows the date; the empty date (or an invalid QDate) blanks the mask. A year outside
    // 1 to 9999 cannot be shown and raises RuntimeError 380.
    void setvalue(const QDate &value);

    // Sets the calendar's display format to sDateFormat when, without its blanks, it is exactly
    // "dd/mm/yyyy", "mm/dd/yyyy", "DD/MM/YYYY" or "MM/DD/YYYY"; otherwise shows "INVALID DATE
    // FORMAT" and changes nothing. Does not change the order the mask is read in. Returns Empty.
    Q_INVOKABLE QVariant SetDateFormat(const QVariant &sDateFormat);

    // Checks the day and month typed (an empty mask passes): a month outside 1-12 puts the
    // caret at 3, a day past the month's last day at 0, and the result is false. February has
    // 29 days in every year divisible by 4, 1900 and 2100 included; day 0 passes.
    Q_INVOKABLE bool ValidDaysOfMonth();

    // Appearance: the colours of the date box's background and text, and its border (0 none,
    // 1 a single line; the default).
    QColor BackColor() const;
    void setBackColor(const QColor &BackColor);
    QColor ForeColor() const;
    void setForeColor(const QColor &ForeColor);
    qint16 BorderStyle() const;
    void setBorderStyle(qint16 BorderStyle);

    // Data binding as the host's container keeps it: the data source (not owned), the member
    // of it and the field the date is bound to. The control itself reads nothing from them.
    QObject *DataSource() const;
    void setDataSource(QObject *DataSource);
    QString DataMember() const;
    void setDataMember(const QString &DataMember);
    QString DataFieldName() const;
    void setDataFieldName(const QString &DataFieldName);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // Raised for every key pressed in the mask except Backspace and Delete, after the control's
    // own key rules, with the key code they left (0 for a swallowed key). A handler may set
    // KeyCode to 0 to swallow the key itself.
    void MaskKeyDown(qint16 &KeyCode, qint16 &Shift);
    // Part of the control's published events; the control itself never raises it.
    void Validatevalue(bool &Cancel);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class DTControlPrivate;
    std::unique_ptr<DTControlPrivate> const d;
};

} // namespace PanelKestrin
