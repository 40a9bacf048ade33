#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QDate>
#include <QDateEdit>
#include <QString>

#include <memory>

namespace PanelKestrin {

class DTPickerPrivate;

// A date picker: a date box with a drop-down calendar. MinDate and MaxDate bound the dates the
// calendar offers (1 January 1601 to 31 December 9999 unless set); CustomFormat is the pattern
// the box shows its date in. Picking a day in the calendar, with the mouse or with Enter,
// raises DatePicked.
class PANELKESTRIN_EXPORT DTPicker : public QDateEdit
{
    Q_OBJECT
    Q_PROPERTY(QDate MinDate READ MinDate WRITE setMinDate)
    Q_PROPERTY(QDate MaxDate READ MaxDate WRITE setMaxDate)
    Q_PROPERTY(QString CustomFormat READ CustomFormat WRITE setCustomFormat)

public:
    explicit DTPicker(QWidget *parent = nullptr);
    ~DTPicker() override;

    // Setting one bound past the other moves the other along; an invalid date changes nothing.
    QDate MinDate() const { return minimumDate(); }
    void setMinDate(const QDate &MinDate);
    QDate MaxDate() const { return maximumDate(); }
    void setMaxDate(const QDate &MaxDate);

    // The pattern as given. The box shows dates only, so its letters are read as date parts
    // whatever their case: "d" the day, "m" the month, "y" the year ("dd/mm/yyyy" shows
    // 25/12/2005); any other letter is shown as it is. An empty pattern shows the user's short
    // date format.
    QString CustomFormat() const;
    void setCustomFormat(const QString &CustomFormat);

Q_SIGNALS:
    void DatePicked(const QDate &date);

private:
    std::unique_ptr<DTPickerPrivate> const d;
};

} // namespace PanelKestrin
