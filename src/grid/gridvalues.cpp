#include "grid/gridvalues_p.h"

#include "grid/flexgridmodel_p.h"
#include "shared/conversions_p.h"

#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/variant.h>

namespace PanelKestrin {

QString cellText(const QVariant &value)
{
    return pointText(value);
}

QString cellTextOrEmpty(const QVariant &value)
{
    return isNull(value) ? QString() : pointText(value);
}

bool showValuesInGrid(FlexGrid &grid, const VariantMatrix &values, NullCell nulls)
{
    if (!values.isAssigned() || values.LBound(1) != 0 || values.LBound(2) != 0
        || values.count(1) > grid.Cols() - 1 || values.count(2) > grid.Rows() - 1)
        return false;
    const bool nullIsEmpty = nulls == NullCell::Empty;
    const int fields = values.count(1);
    const int rows = values.count(2);
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < fields; ++c) {
            const QVariant &value = values(c, r);
            if (!hasTextForm(value) && !(nullIsEmpty && isNull(value)))
                return false;
        }
    }
    FlexGridModel::of(grid)->showValues(values, nullIsEmpty ? cellTextOrEmpty : cellText);
    return true;
}

} // namespace PanelKestrin
