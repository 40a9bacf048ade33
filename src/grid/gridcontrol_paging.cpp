// Population and paging: repainting the cells from the data array and moving the current row
// by a page or to either end. The editor follows through the grid view's cell notifications.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"

#include "grid/gridvalues_p.h"

#include <PanelKestrin/flexgrid.h>

#include <utility>

namespace PanelKestrin {

void gridcontrol::PopulateGrid()
{
    if (d->flexgrid->Rows() <= 1)
        return;
    if (showValuesInGrid(*d->flexgrid, d->mDataArray, NullCell::Fails))
        return;
    // Null is not turned into "" here (unlike MakeStruct): converting it fails.
    for (int c = 0; c <= d->mDataArray.UBound(1); ++c)
        for (int r = 0; r <= d->mDataArray.UBound(2); ++r)
            d->flexgrid->setTextMatrix(r + 1, c + 1, cellText(std::as_const(d->mDataArray)(c, r)));
}

void gridcontrol::Prevpage()
{
    if (d->flexgrid->Rows() <= d->iPageSize)
        return;
    d->flexgrid->setRow(d->flexgrid->Row() > d->iPageSize ? d->flexgrid->Row() - d->iPageSize : 1);
}

void gridcontrol::Nextpage()
{
    const qint32 rows = d->flexgrid->Rows();
    if (rows > d->iPageSize) {
        const qint32 row = d->flexgrid->Row();
        d->flexgrid->setRow(row + d->iPageSize > rows - 1 ? rows - 1 : row + d->iPageSize);
    }
    d->flexgrid->setTopRow(d->flexgrid->Row());
}

void gridcontrol::TopRow()
{
    d->flexgrid->setRow(1);
    d->flexgrid_EnterCell();
}

void gridcontrol::LastRow()
{
    d->flexgrid->setRow(d->flexgrid->Rows() - 1);
}

} // namespace PanelKestrin
