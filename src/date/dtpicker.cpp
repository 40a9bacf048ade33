#include <PanelKestrin/dtpicker.h>

#include <QCalendarWidget>
#include <QLocale>

namespace PanelKestrin {

namespace {

// The display format of the date box for a custom pattern: d, m and y in either case are the
// day, month and year; other letters, and quotes, are quoted so they show as they are.
QString displayFormatFor(const QString &pattern)
{
    if (pattern.isEmpty())
        return QLocale().dateFormat(QLocale::ShortFormat);
    QString format;
    for (const QChar c : pattern) {
        switch (c.toLower().unicode()) {
        case 'd': format += QLatin1Char('d'); break;
        case 'm': format += QLatin1Char('M'); break;
        case 'y': format += QLatin1Char('y'); break;
        case '\'': format += QLatin1String("''"); break;
        default:
            if (c.isLetter())
                format += QLatin1Char('\'') + QString(c) + QLatin1Char('\'');
            else
                format += c;
        }
    }
    return format;
}

} // namespace

class DTPickerPrivate
{
public:
    // The pattern as the host gave it (the box shows its date-only reading).
    QString m_customFormat;
};

DTPicker::DTPicker(QWidget *parent) : QDateEdit(parent), d(std::make_unique<DTPickerPrivate>())
{
    setCalendarPopup(true);
    setDateRange(QDate(1601, 1, 1), QDate(9999, 12, 31));
    setDate(QDate::currentDate());
    setCustomFormat(QString());
    if (QCalendarWidget *calendar = calendarWidget()) {
        connect(calendar, &QCalendarWidget::clicked, this, &DTPicker::DatePicked);
        connect(calendar, &QCalendarWidget::activated, this, &DTPicker::DatePicked);
    }
}

void DTPicker::setMinDate(const QDate &MinDate)
{
    if (MinDate.isValid())
        setMinimumDate(MinDate);
}

void DTPicker::setMaxDate(const QDate &MaxDate)
{
    if (MaxDate.isValid())
        setMaximumDate(MaxDate);
}

DTPicker::~DTPicker() = default;

QString DTPicker::CustomFormat() const
{
    return d->m_customFormat;
}

void DTPicker::setCustomFormat(const QString &CustomFormat)
{
    d->m_customFormat = CustomFormat;
    setDisplayFormat(displayFormatFor(CustomFormat));
}

} // namespace PanelKestrin
