// The editable grid's construction, layout and the simple column-list settings. The other
// concerns live beside this file: structure, store, paging, rows, editor and commands.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/twips.h>

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QResizeEvent>

namespace PanelKestrin {

namespace {
// The strip below the grid view that holds the command buttons and the find box.
constexpr int kButtonStripTwips = 350;
// Size a new control gets before its host places it.
constexpr int kDefaultWidthTwips = 7200;
constexpr int kDefaultHeightTwips = 3600;
} // namespace

gridcontrol::gridcontrol(QWidget *parent) : QWidget(parent), d(std::make_unique<gridcontrolPrivate>(this))
{
    gridcontrolPrivate *const p = d.get();
    p->flexgrid = new FlexGrid(this);
    p->flexgrid->setObjectName(QStringLiteral("flexgrid"));
    p->TxtAdjust = new QLineEdit(this);
    p->TxtAdjust->setObjectName(QStringLiteral("TxtAdjust"));
    p->TxtAdjust->setFrame(false);
    p->TxtAdjust->setVisible(false);
    p->TxtFind = new QLineEdit(this);
    p->TxtFind->setObjectName(QStringLiteral("TxtFind"));
    p->TxtFind->setVisible(false);
    p->TxtFind->setAccessibleName(tr("Find"));
    const auto makeButton = [this](const char *name, const QString &caption) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(QLatin1String(name));
        button->setVisible(false);
        return button;
    };
    p->CmdGridAdd = makeButton("CmdGridAdd", tr("&Add"));
    p->CmdGridDelete = makeButton("CmdGridDelete", tr("&Delete"));
    p->CmdGridFind = makeButton("CmdGridFind", tr("&Find"));

    p->popup = new QMenu(this);
    p->popup->setObjectName(QStringLiteral("popup"));
    const QStringList items{tr("&Add"), tr("&Delete"), tr("&Find")};
    for (int i = 0; i < items.size(); ++i)
        connect(p->popup->addAction(items.at(i)), &QAction::triggered, this, [this, i] {
            guardEvent(QStringLiteral("gridcontrol.pop_Click"), [this, i] { pop_Click(qint16(i)); });
        });

    // Every key and the right button of the editor go through the control first.
    p->TxtAdjust->installEventFilter(this);
    p->TxtAdjust->setContextMenuPolicy(Qt::NoContextMenu);

    // The grid view raises these from user events inside its own error guard.
    FlexGrid *grid = p->flexgrid;
    connect(grid, &FlexGrid::EnterCell, this, [p] { p->flexgrid_EnterCell(); });
    connect(grid, &FlexGrid::LeaveCell, this, [p] { p->flexgrid_LeaveCell(); });
    connect(grid, &FlexGrid::Click, this, [p] { p->flexgrid_Click(); });
    connect(grid, &FlexGrid::KeyDown, this, [p](qint16 &KeyCode, qint16 &Shift) { p->flexgrid_KeyDown(KeyCode, Shift); });
    connect(grid, &FlexGrid::MouseDown, this,
            [p](qint16 &Button, qint16 &Shift, float &X, float &Y) { p->flexgrid_MouseDown(Button, Shift, X, Y); });
    connect(grid, &FlexGrid::MouseUp, this,
            [p](qint16 &Button, qint16 &Shift, float &X, float &Y) { p->flexgrid_MouseUp(Button, Shift, X, Y); });
    // The editor never floats over a cell that has moved away under it.
    connect(grid, &FlexGrid::Scroll, this, [p] { p->TxtAdjust->setVisible(false); });
    connect(grid, &FlexGrid::LostFocus, this, [p] {
        if (QApplication::focusWidget() != p->TxtAdjust)
            p->TxtAdjust->setVisible(false);
    });
    connect(p->TxtFind, &QLineEdit::textChanged, this,
            [p] { guardEvent(QStringLiteral("gridcontrol.TxtFind_Change"), [p] { p->TxtFind_Change(); }); });
    connect(qApp, &QApplication::focusChanged, this, [p](QWidget *old, QWidget *now) { p->focusChanged(old, now); });
    connect(p->CmdGridAdd, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.CmdGridAdd_Click"), [this] { pop_Click(0); }); });
    connect(p->CmdGridDelete, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.CmdGridDelete_Click"), [this] { pop_Click(1); }); });
    connect(p->CmdGridFind, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.CmdGridFind_Click"), [this] { CmdGridFind_Click(); }); });

    resize(TwipsToPixelsX(kDefaultWidthTwips, this), TwipsToPixelsY(kDefaultHeightTwips, this));
    p->layoutChildren();
    // A new control's page is one row shorter than the one MakeStruct computes later.
    p->iPageSize = qint16(p->heightInTwips() / FlexGrid::DefaultRowHeight - 1);
}

gridcontrol::~gridcontrol()
{
    // The children go away after this body, moving the focus and raising their own signals:
    // none of that may reach a half-destroyed control.
    disconnect(qApp, nullptr, this, nullptr);
    d->flexgrid->disconnect(this);
    d->TxtAdjust->disconnect(this);
    d->TxtFind->disconnect(this);
}

qint32 gridcontrolPrivate::heightInTwips() const
{
    return PixelsToTwipsY(q->height(), q);
}

void gridcontrol::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->layoutChildren();
}

// The grid view takes the whole width and the height less the strip below it; the buttons
// stand at the strip's left, the find box at its right edge.
void gridcontrolPrivate::layoutChildren()
{
    const int strip = TwipsToPixelsY(kButtonStripTwips, q);
    const int gridHeight = qMax(0, q->height() - strip);
    flexgrid->setGeometry(0, 0, q->width(), gridHeight);
    int x = 0;
    for (QPushButton *button : {CmdGridAdd, CmdGridDelete, CmdGridFind}) {
        const int w = button->sizeHint().width();
        button->setGeometry(x, gridHeight, w, strip);
        x += w;
    }
    const int findWidth = qMin(q->width() - x, TwipsToPixelsX(2400, q));
    TxtFind->setGeometry(q->width() - qMax(findWidth, 0), gridHeight, qMax(findWidth, 0), strip);
}

void gridcontrol::setNotEditableFields(const QVariant &NotEditableFields)
{
    d->sNotEditableFields = CStr(NotEditableFields);
}

void gridcontrol::setNotBlankCols(const QString &NotBlankCols)
{
    d->sNotBlankCols = NotBlankCols;
}

void gridcontrol::setDisableCol(const QString &DisableCol)
{
    d->sDisableCols = Split(DisableCol, QStringLiteral(","));
}

void gridcontrol::setInvokeHelpCol(const QString &InvokeHelpCol)
{
    d->sHelpCols = Split(InvokeHelpCol, QStringLiteral(","));
}

void gridcontrol::setMandatoryCol(const QString &MandatoryCol)
{
    d->sMandatoryCols = Split(MandatoryCol, QStringLiteral(","));
}

void gridcontrol::setColListEnabled(bool)
{
}

void gridcontrol::setGridEnable(bool bVar)
{
    d->flexgrid->setEnabled(bVar);
    d->TxtAdjust->setEnabled(bVar);
}

QVariant gridcontrol::GridHeader() const
{
    return d->sGridHeader;
}

void gridcontrol::setGridHeader(const QVariant &GridHeader)
{
    d->sGridHeader = CStr(GridHeader);
}

} // namespace PanelKestrin
