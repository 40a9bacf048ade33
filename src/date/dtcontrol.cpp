#include <PanelKestrin/conversions.h>
#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/dtpicker.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/sendkeys.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>

#include <QApplication>
#include <QFrame>
#include <QLineEdit>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <cmath>

namespace PanelKestrin {

namespace {

const QString kDayFirst = QStringLiteral("DD/MM/YYYY");

// The separator the mask uses: the user's setting, or "/" when there is none or when it holds
// a character the mask would take for something else (a digit position, a digit, the prompt).
QString userDateSeparator()
{
    const QString setting = GetRegValue(HKEY_CURRENT_USER, QStringLiteral("\\Control Panel\\International"),
                                        QStringLiteral("sDate"));
    for (const QChar c : setting) {
        if (c.isDigit() || c == QLatin1Char('#') || c == QLatin1Char(';') || c == QChar(MaskEdBox::PromptChar))
            return QStringLiteral("/");
    }
    return setting.isEmpty() ? QStringLiteral("/") : setting;
}

QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

// Where the calendar's drop-down button sits in a picker of the given size.
QRect arrowRect(const DTPicker *picker, const QSize &size)
{
    QStyleOptionComboBox combo;
    combo.initFrom(picker);
    combo.rect = QRect(QPoint(0, 0), size);
    combo.editable = true;
    combo.subControls = QStyle::SC_All;
    return picker->style()->subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxArrow, picker);
}

} // namespace

// The control's parts and state: the frame, the mask and the calendar, the user's separator and
// the day/month order, and the checks that read them.
class DTControlPrivate
{
public:
    explicit DTControlPrivate(DTControl *control) : q(control) {}

    void MaskEdBox1_KeyDown(qint16 &KeyCode, qint16 &Shift);
    void DTPicker1_DatePicked(const QDate &date);
    void UserControl_ExitFocus();
    void focusChanged(QWidget *old, QWidget *now);
    void placeParts();
    void followMask();

    bool dayFirst() const;
    // The date the mask's digits spell in the order in force; invalid when they spell none.
    QDate spelledDate() const;
    // The date a complete mask spells; RuntimeError 5 when it spells none.
    QDate maskDate() const;
    bool outOfRange(const QDate &date) const;
    // The mask's text for a date, and the blank text.
    QString maskText(const QDate &date) const;
    QString blankText() const;

    DTControl *const q;
    QFrame *fraDate = nullptr;
    MaskEdBox *MaskEdBox1 = nullptr;
    DTPicker *DTPicker1 = nullptr;
    QMetaObject::Connection m_focusWatch;

    // The user's date separator.
    QString sDateSep;
    // The day/month order in force, upper case.
    QString mDateFormat;

    // Data binding as the container set it.
    QPointer<QObject> mDataSource;
    QString mDataMember;
    QString mDataFieldName;
};

DTControl::DTControl(QWidget *parent) : QWidget(parent), d(std::make_unique<DTControlPrivate>(this))
{
    auto *fraDate = d->fraDate = new QFrame(this);
    fraDate->setObjectName(QStringLiteral("fraDate"));
    fraDate->setFrameShape(QFrame::NoFrame);

    // The calendar lies under the mask, which leaves only its drop-down button uncovered.
    auto *DTPicker1 = d->DTPicker1 = new DTPicker(fraDate);
    DTPicker1->setObjectName(QStringLiteral("DTPicker1"));
    DTPicker1->setToolTip(tr("Select Date from Calendar."));
    DTPicker1->setFocusPolicy(Qt::NoFocus);
    if (QLineEdit *pickerText = DTPicker1->findChild<QLineEdit *>())
        pickerText->setFocusPolicy(Qt::NoFocus);

    auto *MaskEdBox1 = d->MaskEdBox1 = new MaskEdBox(fraDate);
    MaskEdBox1->setObjectName(QStringLiteral("MaskEdBox1"));
    MaskEdBox1->raise();
    setFocusProxy(MaskEdBox1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    d->sDateSep = userDateSeparator();
    MaskEdBox1->setMask(QStringLiteral("##") + d->sDateSep + QStringLiteral("##") + d->sDateSep + QStringLiteral("####"));
    d->mDateFormat = kDayFirst;

    DTControlPrivate *const p = d.get();
    connect(MaskEdBox1, &MaskEdBox::KeyDown, this, [p](qint16 &KeyCode, qint16 &Shift) {
        // A key whose rules failed is swallowed, so that it does not act on a date it could not check.
        if (!guardEvent(QStringLiteral("DTControl.MaskEdBox1_KeyDown"), [&] { p->MaskEdBox1_KeyDown(KeyCode, Shift); }))
            KeyCode = 0;
    });
    connect(MaskEdBox1, &QLineEdit::textChanged, this, [p] { p->followMask(); });
    connect(DTPicker1, &DTPicker::DatePicked, this, [p](const QDate &date) {
        guardEvent(QStringLiteral("DTControl.DTPicker1_DatePicked"), [&] { p->DTPicker1_DatePicked(date); });
    });
    d->m_focusWatch = connect(qApp, &QApplication::focusChanged, this,
                              [p](QWidget *old, QWidget *now) { p->focusChanged(old, now); });
    d->placeParts();
}

DTControl::~DTControl()
{
    // The parts are destroyed after this object stops being a DTControl and may hand the focus
    // on as they go: no check may run then. They go now, while the state they are wired to is
    // still here.
    disconnect(d->m_focusWatch);
    delete d->fraDate;
}

void DTControl::setdDateFormat(const QString &dDateFormat)
{
    d->mDateFormat = dDateFormat.isEmpty() ? kDayFirst : UCase(dDateFormat);
}

void DTControl::setMaxdate(const QDate &Maxdate)
{
    d->DTPicker1->setMaxDate(Maxdate);
}

void DTControl::setMindate(const QDate &Mindate)
{
    d->DTPicker1->setMinDate(Mindate);
}

bool DTControlPrivate::dayFirst() const
{
    return mDateFormat == kDayFirst;
}

QString DTControlPrivate::maskText(const QDate &date) const
{
    const QString first = twoDigits(dayFirst() ? date.day() : date.month());
    const QString second = twoDigits(dayFirst() ? date.month() : date.day());
    return first + sDateSep + second + sDateSep + QStringLiteral("%1").arg(date.year(), 4, 10, QLatin1Char('0'));
}

QString DTControlPrivate::blankText() const
{
    const QString two(2, QChar(MaskEdBox::PromptChar));
    return two + sDateSep + two + sDateSep + QString(4, QChar(MaskEdBox::PromptChar));
}

QDate DTControlPrivate::spelledDate() const
{
    const QString digits = MaskEdBox1->ClipText();
    const int first = digits.mid(0, 2).toInt();
    const int second = digits.mid(2, 2).toInt();
    const int year = digits.mid(4, 4).toInt();
    return dayFirst() ? QDate(year, second, first) : QDate(year, first, second);
}

QDate DTControlPrivate::maskDate() const
{
    const QDate date = spelledDate();
    if (!date.isValid()) {
        throw RuntimeError(ErrInvalidProcedureCall,
                           RuntimeError::standardDescription(ErrInvalidProcedureCall) + QStringLiteral(": ")
                               + DTControl::tr("%1 is not a date").arg(MaskEdBox1->Text()),
                           QStringLiteral("DTControl"));
    }
    return date;
}

bool DTControlPrivate::outOfRange(const QDate &date) const
{
    return DTPicker1->MinDate() > date || DTPicker1->MaxDate() < date;
}

QDate DTControl::value() const
{
    if (d->MaskEdBox1->ClipText().size() == 8)
        return d->maskDate();
    return QDate(1899, 12, 30);
}

void DTControl::setvalue(const QDate &value)
{
    if (!value.isValid() || value == QDate(1899, 12, 30)) {
        d->MaskEdBox1->setText(d->blankText());
        return;
    }
    if (value.year() < 1 || value.year() > 9999) {
        throw RuntimeError(ErrInvalidPropertyValue,
                           RuntimeError::standardDescription(ErrInvalidPropertyValue) + QStringLiteral(": ")
                               + tr("the mask shows years 1 to 9999, not %1").arg(value.year()),
                           QStringLiteral("DTControl"));
    }
    d->MaskEdBox1->setText(d->maskText(value));
}

QVariant DTControl::SetDateFormat(const QVariant &sDateFormat)
{
    const QString given = isNull(sDateFormat) ? QString() : CStr(sDateFormat);
    const QString f = Trim(given);
    for (const char *accepted : {"dd/mm/yyyy", "mm/dd/yyyy", "DD/MM/YYYY", "MM/DD/YYYY"}) {
        if (f == QLatin1String(accepted)) {
            d->DTPicker1->setCustomFormat(given);
            return QVariant();
        }
    }
    MsgBox(tr("INVALID DATE FORMAT"), vbOKOnly);
    return QVariant();
}

bool DTControl::ValidDaysOfMonth()
{
    const QString clip = d->MaskEdBox1->ClipText();
    if (Trim(clip).isEmpty())
        return true;
    const double first = Val(Mid(clip, 1, 2));
    const double second = Val(Mid(clip, 3, 2));
    const double year = Val(Mid(clip, 5, 4));
    const double day = d->dayFirst() ? first : second;
    const double month = d->dayFirst() ? second : first;

    int errorAt = -1;
    if (month < 1 || month > 12) {
        errorAt = 3;
    } else {
        double days = 31;
        if (month == 4 || month == 6 || month == 9 || month == 11)
            days = 30;
        else if (month == 2) // every fourth year is a leap year here, centuries included
            days = std::fmod(year, 4) == 0 ? 29 : 28;
        if (day > days)
            errorAt = 0;
    }
    if (errorAt < 0)
        return true;
    d->MaskEdBox1->setSelStart(errorAt);
    return false;
}

void DTControlPrivate::MaskEdBox1_KeyDown(qint16 &KeyCode, qint16 &Shift)
{
    if (KeyCode == vbKeyBack || KeyCode == vbKeyDelete)
        return;
    if (KeyCode == vbKeyReturn || KeyCode == vbKeyDown || KeyCode == vbKeyUp || KeyCode == vbKeyTab) {
        if (!q->ValidDaysOfMonth())
            return;
        const bool beyond = Trim(MaskEdBox1->ClipText()).size() == 8 && outOfRange(maskDate());
        if (beyond) {
            if (KeyCode == vbKeyTab || KeyCode == vbKeyReturn)
                KeyCode = 0;
        } else if (KeyCode == vbKeyUp) {
            SendKeys(QStringLiteral("+{Tab}"));
        } else if (KeyCode == vbKeyDown) {
            SendKeys(QStringLiteral("{Tab}"));
        }
    }
    emit q->MaskKeyDown(KeyCode, Shift);
}

void DTControlPrivate::DTPicker1_DatePicked(const QDate &date)
{
    MaskEdBox1->setText(maskText(date));
    MaskEdBox1->SetFocus();
}

// The picker opens on the date typed, once there is one it can show.
void DTControlPrivate::followMask()
{
    if (MaskEdBox1->ClipText().size() != 8)
        return;
    const QDate date = spelledDate();
    if (date.isValid() && !outOfRange(date))
        DTPicker1->setDate(date);
}

void DTControlPrivate::focusChanged(QWidget *old, QWidget *now)
{
    // Only a move to another control of the same form leaves the control: a calendar pop-up,
    // a message box or another application taking the focus does not.
    if (!old || !now || now->window() != q->window())
        return;
    // Nor is the focus held in a mask that cannot take it back.
    if (!MaskEdBox1->isVisible() || !MaskEdBox1->isEnabled())
        return;
    if (q->isAncestorOf(old) && !q->isAncestorOf(now))
        guardEvent(QStringLiteral("DTControl.UserControl_ExitFocus"), [this] { UserControl_ExitFocus(); });
}

void DTControlPrivate::UserControl_ExitFocus()
{
    try {
        const QString clip = MaskEdBox1->ClipText();
        if (clip.isEmpty())
            return;
        if (clip.size() == 8 && outOfRange(maskDate()))
            MaskEdBox1->SetFocus();
        if (!q->ValidDaysOfMonth()) {
            MaskEdBox1->SetFocus();
            return;
        }
        if (clip.size() < 5) { // the year not begun
            MaskEdBox1->SetFocus();
            return;
        }
        if (Val(Mid(clip, 5, Len(Trim(clip)) - 4)) < 1899)
            MaskEdBox1->SetFocus();
    } catch (const RuntimeError &e) {
        // The check ends at an error; an impossible date (5) is forgotten, anything else stays
        // pending for the host.
        if (e.Number() == ErrInvalidProcedureCall)
            Err().Clear();
        else
            Err().setFrom(e);
    }
}

void DTControlPrivate::placeParts()
{
    fraDate->setGeometry(q->rect());
    DTPicker1->setGeometry(fraDate->rect());
    MaskEdBox1->setGeometry(0, 0, qMax(0, arrowRect(DTPicker1, q->size()).left()), fraDate->height());
}

QColor DTControl::BackColor() const
{
    return d->MaskEdBox1->palette().color(QPalette::Base);
}

void DTControl::setBackColor(const QColor &BackColor)
{
    QPalette p = d->MaskEdBox1->palette();
    p.setColor(QPalette::Base, BackColor);
    d->MaskEdBox1->setPalette(p);
}

QColor DTControl::ForeColor() const
{
    return d->MaskEdBox1->palette().color(QPalette::Text);
}

void DTControl::setForeColor(const QColor &ForeColor)
{
    QPalette p = d->MaskEdBox1->palette();
    p.setColor(QPalette::Text, ForeColor);
    d->MaskEdBox1->setPalette(p);
}

qint16 DTControl::BorderStyle() const
{
    return d->MaskEdBox1->hasFrame() ? 1 : 0;
}

void DTControl::setBorderStyle(qint16 BorderStyle)
{
    d->MaskEdBox1->setFrame(BorderStyle != 0);
}

QObject *DTControl::DataSource() const
{
    return d->mDataSource;
}

void DTControl::setDataSource(QObject *DataSource)
{
    d->mDataSource = DataSource;
}

QString DTControl::DataMember() const
{
    return d->mDataMember;
}

void DTControl::setDataMember(const QString &DataMember)
{
    d->mDataMember = DataMember;
}

QString DTControl::DataFieldName() const
{
    return d->mDataFieldName;
}

void DTControl::setDataFieldName(const QString &DataFieldName)
{
    d->mDataFieldName = DataFieldName;
}

void DTControl::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->placeParts();
}

QSize DTControl::sizeHint() const
{
    // Room for the mask's text in digits, a margin, and the calendar's button.
    const QFontMetrics metrics = d->MaskEdBox1->fontMetrics();
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, d->MaskEdBox1);
    const int text = metrics.horizontalAdvance(QString(d->MaskEdBox1->Mask().size() + 1, QLatin1Char('0')));
    const QSize picker = d->DTPicker1->sizeHint();
    const QRect arrow = arrowRect(d->DTPicker1, picker);
    const int height = qMax(d->MaskEdBox1->sizeHint().height(), picker.height());
    return QSize(text + 2 * frame + 8 + (picker.width() - arrow.left()), height);
}

QSize DTControl::minimumSizeHint() const
{
    return sizeHint();
}

} // namespace PanelKestrin
