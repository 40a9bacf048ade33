// The grid's commands, reached through the pop-up menu, the buttons below the grid and Enter on
// the last cell: add a row, delete the current row, open the find box.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>

#include <QLineEdit>
#include <QScopedValueRollback>

namespace PanelKestrin {

void gridcontrol::pop_Click(qint16 Index)
{
    if (!bShowMenu)
        return;
    d->TxtFind->setVisible(false);
    switch (Index) {
    case 0: d->addRow(); break;
    case 1: d->deleteRow(); break;
    case 2: CmdGridFind_Click(); break;
    default: break;
    }
}

// Whether the last row's value in data column j is blank by its type: "C" and "D" values when
// their trimmed text is "", "N" values when they are 0; a missing (Null) value is blank too.
// Other types never count as data.
bool gridcontrolPrivate::lastRowValueBlank(int j) const
{
    const QVariant &value = mDataArray(j, mDataArray.UBound(2));
    const QString type = j < RecStructArray.size() ? RecStructArray.at(j).DataType : QString();
    if (type == QLatin1String("C") || type == QLatin1String("D"))
        return isNull(value) || Trim(CStr(value)).isEmpty();
    if (type == QLatin1String("N"))
        return isNull(value) || Val(value) == 0;
    return true;
}

void gridcontrolPrivate::addRow()
{
    if (!commitCurrentCell())
        return;
    // A new row only goes below a row that holds data with every mandatory column filled.
    const int lastField = mDataArray.UBound(1);
    bool rowBlank = true;
    for (int j = 0; j <= lastField && rowBlank; ++j)
        rowBlank = lastRowValueBlank(j);
    bool mandatoryBlank = false;
    for (int j = 0; j <= lastField && !mandatoryBlank; ++j)
        mandatoryBlank = j + 1 < GridStructArray.size() && GridStructArray.at(j + 1).ColMandatory
                         && lastRowValueBlank(j);
    if (rowBlank || mandatoryBlank)
        return;

    qint32 row = flexgrid->Row() - 1;
    bool Cancel = false;
    emit q->RowLevelValidate(row, Cancel);
    if (Cancel)
        return;

    // The blank row that the save trim left on screen becomes the new row; otherwise the grid
    // grows by one.
    const bool blankRowShown = !hasDataRow(flexgrid->Rows() - 1);
    const int last = mDataArray.UBound(2);
    mDataArray.redimPreserve(last + 1);
    mRowStatusArray.resize(last + 2);
    mRowStatusArray[last + 1] = QStringLiteral("A");

    {
        QScopedValueRollback<bool> adding(bAddingRow, true);
        flexgrid->setTextMatrix(flexgrid->Row(), 0, QString());
        if (!blankRowShown)
            flexgrid->setRows(flexgrid->Rows() + 1);
        flexgrid->setRow(flexgrid->Rows() - 1);
        flexgrid->setTextMatrix(flexgrid->Row(), 0, QStringLiteral(">"));
        flexgrid->setCol(1);
        TxtAdjust->setText(QString());
        placeEditor();
        showEditorForCurrentColumn();
        if (TxtAdjust->isVisible())
            TxtAdjust->setFocus();
    }
    emit q->GridAfterRowAdd();
}

void gridcontrolPrivate::deleteRow()
{
    QScopedValueRollback<bool> deleting(bDeletingRow, true);
    qint32 row = flexgrid->Row();
    if (!RemoveGridRow(row))
        MsgBox(gridcontrol::tr("Cannot Delete ! "), vbExclamation, gridcontrol::tr("Wait"));
}

void gridcontrol::CmdGridFind_Click()
{
    if (!d->commitCurrentCell())
        return;
    d->TxtFind->setText(QString());
    d->TxtFind->setVisible(true);
    d->TxtFind->setFocus();
}

} // namespace PanelKestrin
