// Population and paging: repainting the cells from the data array and moving the current row
// by a page or to either end. The editor follows through the grid view's cell notifications.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridvalues_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/flexgrid.h>

#include <utility>

namespace PanelKestrin {

void gridcontrol::PopulateGrid()
{
    if (flexgrid->Rows() <= 1)
        return;
    if (showValuesInGrid(*flexgrid, mDataArray, NullCell::Fails))
        return;
    // Null is not turned into "" here (unlike MakeStruct): converting it fails.
    for (int c = 0; c <= mDataArray.UBound(1); ++c)
        for (int r = 0; r <= mDataArray.UBound(2); ++r)
            flexgrid->setTextMatrix(r + 1, c + 1, CStr(std::as_const(mDataArray)(c, r)));
}

void gridcontrol::Prevpage()
{
    if (flexgrid->Rows() <= iPageSize)
        return;
    flexgrid->setRow(flexgrid->Row() > iPageSize ? flexgrid->Row() - iPageSize : 1);
}

void gridcontrol::Nextpage()
{
    const qint32 rows = flexgrid->Rows();
    if (rows > iPageSize) {
        const qint32 row = flexgrid->Row();
        flexgrid->setRow(row + iPageSize > rows - 1 ? rows - 1 : row + iPageSize);
    }
    flexgrid->setTopRow(flexgrid->Row());
}

void gridcontrol::TopRow()
{
    flexgrid->setRow(1);
    flexgrid_EnterCell();
}

void gridcontrol::LastRow()
{
    flexgrid->setRow(flexgrid->Rows() - 1);
}

} // namespace PanelKestrin
