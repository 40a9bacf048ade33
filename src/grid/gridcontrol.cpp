// The editable grid's construction, layout and the simple column-list settings. The other
// concerns live beside this file: structure, store, paging, rows, editor and commands.
#include <PanelKestrin/gridcontrol.h>

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

gridcontrol::gridcontrol(QWidget *parent) : QWidget(parent)
{
    flexgrid = new FlexGrid(this);
    flexgrid->setObjectName(QStringLiteral("flexgrid"));
    TxtAdjust = new QLineEdit(this);
    TxtAdjust->setObjectName(QStringLiteral("TxtAdjust"));
    TxtAdjust->setFrame(false);
    TxtAdjust->setVisible(false);
    TxtFind = new QLineEdit(this);
    TxtFind->setObjectName(QStringLiteral("TxtFind"));
    TxtFind->setVisible(false);
    TxtFind->setAccessibleName(tr("Find"));
    const auto makeButton = [this](const char *name, const QString &caption) {
        auto *button = new QPushButton(caption, this);
        button->setObjectName(QLatin1String(name));
        button->setVisible(false);
        return button;
    };
    CmdGridAdd = makeButton("CmdGridAdd", tr("&Add"));
    CmdGridDelete = makeButton("CmdGridDelete", tr("&Delete"));
    CmdGridFind = makeButton("CmdGridFind", tr("&Find"));

    popup = new QMenu(this);
    popup->setObjectName(QStringLiteral("popup"));
    const QStringList items{tr("&Add"), tr("&Delete"), tr("&Find")};
    for (int i = 0; i < items.size(); ++i)
        connect(popup->addAction(items.at(i)), &QAction::triggered, this, [this, i] {
            guardEvent(QStringLiteral("gridcontrol.pop_Click"), [this, i] { pop_Click(qint16(i)); });
        });

    // Every key and the right button of the editor go through the control first.
    TxtAdjust->installEventFilter(this);
    TxtAdjust->setContextMenuPolicy(Qt::NoContextMenu);

    // The grid view raises these from user events inside its own error guard.
    connect(flexgrid, &FlexGrid::EnterCell, this, &gridcontrol::flexgrid_EnterCell);
    connect(flexgrid, &FlexGrid::LeaveCell, this, &gridcontrol::flexgrid_LeaveCell);
    connect(flexgrid, &FlexGrid::Click, this, &gridcontrol::flexgrid_Click);
    connect(flexgrid, &FlexGrid::KeyDown, this, &gridcontrol::flexgrid_KeyDown);
    connect(flexgrid, &FlexGrid::MouseDown, this, &gridcontrol::flexgrid_MouseDown);
    connect(flexgrid, &FlexGrid::MouseUp, this, &gridcontrol::flexgrid_MouseUp);
    // The editor never floats over a cell that has moved away under it.
    connect(flexgrid, &FlexGrid::Scroll, this, [this] { TxtAdjust->setVisible(false); });
    connect(flexgrid, &FlexGrid::LostFocus, this, [this] {
        if (QApplication::focusWidget() != TxtAdjust)
            TxtAdjust->setVisible(false);
    });
    connect(TxtFind, &QLineEdit::textChanged, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.TxtFind_Change"), [this] { TxtFind_Change(); }); });
    connect(qApp, &QApplication::focusChanged, this, &gridcontrol::focusChanged);
    connect(CmdGridAdd, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.CmdGridAdd_Click"), [this] { pop_Click(0); }); });
    connect(CmdGridDelete, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.CmdGridDelete_Click"), [this] { pop_Click(1); }); });
    connect(CmdGridFind, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("gridcontrol.CmdGridFind_Click"), [this] { CmdGridFind_Click(); }); });

    resize(TwipsToPixelsX(kDefaultWidthTwips, this), TwipsToPixelsY(kDefaultHeightTwips, this));
    layoutChildren();
    // A new control's page is one row shorter than the one MakeStruct computes later.
    iPageSize = qint16(heightInTwips() / FlexGrid::DefaultRowHeight - 1);
}

gridcontrol::~gridcontrol()
{
    // The children go away after this body, moving the focus and raising their own signals:
    // none of that may reach a half-destroyed control.
    disconnect(qApp, nullptr, this, nullptr);
    flexgrid->disconnect(this);
    TxtAdjust->disconnect(this);
    TxtFind->disconnect(this);
}

qint32 gridcontrol::heightInTwips() const
{
    return PixelsToTwipsY(height(), this);
}

void gridcontrol::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutChildren();
}

// The grid view takes the whole width and the height less the strip below it; the buttons
// stand at the strip's left, the find box at its right edge.
void gridcontrol::layoutChildren()
{
    const int strip = TwipsToPixelsY(kButtonStripTwips, this);
    const int gridHeight = qMax(0, height() - strip);
    flexgrid->setGeometry(0, 0, width(), gridHeight);
    int x = 0;
    for (QPushButton *button : {CmdGridAdd, CmdGridDelete, CmdGridFind}) {
        const int w = button->sizeHint().width();
        button->setGeometry(x, gridHeight, w, strip);
        x += w;
    }
    const int findWidth = qMin(width() - x, TwipsToPixelsX(2400, this));
    TxtFind->setGeometry(width() - qMax(findWidth, 0), gridHeight, qMax(findWidth, 0), strip);
}

void gridcontrol::setNotEditableFields(const QVariant &NotEditableFields)
{
    sNotEditableFields = CStr(NotEditableFields);
}

void gridcontrol::setNotBlankCols(const QString &NotBlankCols)
{
    sNotBlankCols = NotBlankCols;
}

void gridcontrol::setDisableCol(const QString &DisableCol)
{
    sDisableCols = Split(DisableCol, QStringLiteral(","));
}

void gridcontrol::setInvokeHelpCol(const QString &InvokeHelpCol)
{
    sHelpCols = Split(InvokeHelpCol, QStringLiteral(","));
}

void gridcontrol::setMandatoryCol(const QString &MandatoryCol)
{
    sMandatoryCols = Split(MandatoryCol, QStringLiteral(","));
}

void gridcontrol::setColListEnabled(bool m_listenabled)
{
    bListEnabled = m_listenabled;
}

void gridcontrol::setGridEnable(bool bVar)
{
    flexgrid->setEnabled(bVar);
    TxtAdjust->setEnabled(bVar);
}

QVariant gridcontrol::GridHeader() const
{
    return sGridHeader;
}

void gridcontrol::setGridHeader(const QVariant &GridHeader)
{
    sGridHeader = CStr(GridHeader);
}

} // namespace PanelKestrin
