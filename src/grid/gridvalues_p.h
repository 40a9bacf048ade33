#pragma once

#include <PanelKestrin/variantmatrix.h>

namespace PanelKestrin {

class FlexGrid;

// The text a value shows in its cell: CStr's, so dates follow the user's short-date pattern,
// except that numbers keep "." as the decimal point, the form the cell editor reads back with
// Val. Null raises error 94, as CStr does.
QString cellText(const QVariant &value);
// cellText, with "" for Null (the cells of a loaded recordset).
QString cellTextOrEmpty(const QVariant &value);

// How a Null element of the data array reaches its cell.
enum class NullCell {
    Empty, // shown as "" (loading a recordset)
    Fails  // converting it fails (repainting from the array)
};

// Shows every element of values in its grid cell, values(c, r) in cell (r + 1, c + 1), as its
// text, without making the texts now: each is made when the cell is drawn or read. Done only
// when that is the same as writing the cells' texts one by one: values starts at (0, 0), fits
// inside the grid's data cells, and every element has a text. Returns false, changing nothing,
// otherwise; the caller then writes the cells itself and meets the failure where it lies.
bool showValuesInGrid(FlexGrid &grid, const VariantMatrix &values, NullCell nulls);

} // namespace PanelKestrin
