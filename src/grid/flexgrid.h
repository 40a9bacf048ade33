#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QColor>
#include <QString>
#include <QWidget>

#include <memory>

class QTableView;

namespace PanelKestrin {

class FlexGridPrivate;

// The text grid the editable grid draws on. Row 0 is the fixed header row and column 0 the fixed
// marker column, drawn as the view's headers; cells (r, c) with r, c >= 1 are the data cells.
// The text is the grid's own. Rows and columns are counted as the grid counts them: Rows() = data
// rows + 1, Cols() = data columns + 1.
//
// The current cell (Row, Col) ranges over 0..Rows-1 and 0..Cols-1. Whenever it changes, from
// code or from the user, LeaveCell is raised while the old cell is still current, then the cell
// changes, then EnterCell is raised; both synchronously. Setting the cell it already is raises
// nothing. An index outside the grid raises RuntimeError 381.
//
// Positions and sizes are in twips, relative to the grid's own top-left corner. Underneath is a
// QTableView over a text model with uniform row heights, so painting, scrolling and moving cost
// follow the visible cells, not the row count; the view carries the keyboard focus and gives
// screen readers cell, row and column.
class PANELKESTRIN_EXPORT FlexGrid : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(qint32 Rows READ Rows WRITE setRows)
    Q_PROPERTY(qint32 Cols READ Cols WRITE setCols)
    Q_PROPERTY(qint32 Row READ Row WRITE setRow)
    Q_PROPERTY(qint32 Col READ Col WRITE setCol)
    Q_PROPERTY(qint32 TopRow READ TopRow WRITE setTopRow)
    Q_PROPERTY(QString Text READ Text WRITE setText)
    Q_PROPERTY(bool Redraw READ Redraw WRITE setRedraw)
    Q_PROPERTY(qint32 CellLeft READ CellLeft)
    Q_PROPERTY(qint32 CellTop READ CellTop)
    Q_PROPERTY(qint32 CellWidth READ CellWidth)
    Q_PROPERTY(qint32 CellHeight READ CellHeight)
    Q_PROPERTY(QColor BackColorSel READ BackColorSel WRITE setBackColorSel)
    Q_PROPERTY(bool AllowBigSelection READ AllowBigSelection WRITE setAllowBigSelection)
    Q_PROPERTY(qint32 HighLight READ HighLight WRITE setHighLight)

public:
    // Cell alignment codes of ColAlignment.
    enum AlignmentSettings {
        flexAlignLeftTop = 0, flexAlignLeftCenter = 1, flexAlignLeftBottom = 2,
        flexAlignCenterTop = 3, flexAlignCenterCenter = 4, flexAlignCenterBottom = 5,
        flexAlignRightTop = 6, flexAlignRightCenter = 7, flexAlignRightBottom = 8,
        flexAlignGeneral = 9
    };
    Q_ENUM(AlignmentSettings)
    // HighLight values: when the selected cells are drawn in the selection colour.
    enum HighLightSettings { flexHighlightNever = 0, flexHighlightAlways = 1, flexHighlightWithFocus = 2 };
    Q_ENUM(HighLightSettings)

    // Every row is this high (twips); a page of the grid is its height divided by it.
    static constexpr qint32 DefaultRowHeight = 285;

    explicit FlexGrid(QWidget *parent = nullptr);
    ~FlexGrid() override;

    // Growing adds empty rows/columns; shrinking drops them. The current cell is clamped into the
    // new shape without raising LeaveCell/EnterCell. Rows >= 1 and Cols >= 1 always (the fixed
    // row and column); a smaller value raises 381.
    qint32 Rows() const;
    void setRows(qint32 Rows);
    qint32 Cols() const;
    void setCols(qint32 Cols);

    qint32 Row() const;
    void setRow(qint32 Row);
    qint32 Col() const;
    void setCol(qint32 Col);

    // The first data row shown at the top of the view (1 when there is none). Setting it scrolls
    // so that row is at the top as far as the scroll range allows.
    qint32 TopRow() const;
    void setTopRow(qint32 TopRow);

    // The current cell's text.
    QString Text() const;
    void setText(const QString &Text);
    Q_INVOKABLE QString TextMatrix(qint32 Row, qint32 Col) const;
    Q_INVOKABLE void setTextMatrix(qint32 Row, qint32 Col, const QString &Text);

    // Column width in twips (column 0 is the marker column).
    Q_INVOKABLE qint32 ColWidth(qint32 Col) const;
    Q_INVOKABLE void setColWidth(qint32 Col, qint32 Width);
    Q_INVOKABLE qint32 ColAlignment(qint32 Col) const;
    Q_INVOKABLE void setColAlignment(qint32 Col, qint32 Alignment);

    // The current cell's rectangle in twips, relative to the grid.
    qint32 CellLeft() const;
    qint32 CellTop() const;
    qint32 CellWidth() const;
    qint32 CellHeight() const;

    // False suspends painting (and per-cell change notifications) during bulk updates; True
    // repaints once.
    bool Redraw() const;
    void setRedraw(bool Redraw);

    // Removes grid row Row (>= 1) and its text; the rows below move up.
    Q_INVOKABLE void RemoveItem(qint32 Row);

    QColor BackColorSel() const;
    void setBackColorSel(const QColor &color);
    // True lets a click on a header select the whole row or column; False keeps the selection
    // to the current cell.
    bool AllowBigSelection() const;
    void setAllowBigSelection(bool allow);
    qint32 HighLight() const;
    void setHighLight(qint32 mode);

    // The view underneath (for focus, accessibility and tests); its model is the grid's own and
    // must not be replaced.
    QTableView *view() const;

Q_SIGNALS:
    void EnterCell();
    void LeaveCell();
    void Click();
    // Raised before the grid handles a key; a handler setting KeyCode = 0 swallows it.
    void KeyDown(qint16 &KeyCode, qint16 &Shift);
    // Button: 1 left, 2 right, 4 middle; Shift mask; X, Y in twips relative to the grid.
    void MouseDown(qint16 &Button, qint16 &Shift, float &X, float &Y);
    void MouseUp(qint16 &Button, qint16 &Shift, float &X, float &Y);
    // The view scrolled (either direction).
    void Scroll();
    // The grid lost the keyboard focus.
    void LostFocus();

private:
    friend class FlexGridPrivate;
    std::unique_ptr<FlexGridPrivate> const d;
};

} // namespace PanelKestrin
