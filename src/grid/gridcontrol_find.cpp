// The find box: every change of its text searches the data array from the first row for a value
// that begins with the typed text (any case) and moves there without taking the focus.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"
#include "grid/gridvalues_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/dialog.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>

#include <QLineEdit>
#include <QScopedValueRollback>

namespace PanelKestrin {

namespace {
// The text a value is searched by: the one its cell shows; a missing value has none.
QString searchText(const QVariant &value)
{
    return UCase(cellTextOrEmpty(value));
}
} // namespace

void gridcontrolPrivate::TxtFind_Change()
{
    // Read only: a write access would detach the store from findSource and void the texts.
    const VariantMatrix &data = mDataArray;
    const int lastField = data.UBound(1);
    const int lastRow = data.UBound(2);
    const QVariant &first = data(0, 0);
    if (isEmpty(first) || isNull(first) || Trim(CStr(first)).isEmpty()) {
        Dialog::DisplayMsg(gridcontrol::tr("No Matching Value Found"), q->window());
        return;
    }

    // Upper-cased texts are built once for each content of the store (see findSource).
    if (findSource.storageId() != data.storageId() || findTexts.size() != (lastField + 1) * (lastRow + 1)) {
        findSource = data;
        findTexts.resize((lastField + 1) * (lastRow + 1));
        for (int i = 0; i <= lastRow; ++i)
            for (int j = 0; j <= lastField; ++j)
                findTexts[i * (lastField + 1) + j] = searchText(data(j, i));
    }

    // Rows first, then the columns of each row; the first value beginning with the key wins.
    const QString key = UCase(Trim(TxtFind->text()));
    const qsizetype count = findTexts.size();
    for (qsizetype k = 0; k < count; ++k) {
        if (!findTexts.at(k).startsWith(key))
            continue;
        const int row = int(k / (lastField + 1)) + 1;
        const int col = int(k % (lastField + 1)) + 1;
        if (lSavedRow != row)
            flexgrid->setTextMatrix(lSavedRow, 0, QString());
        QScopedValueRollback<bool> finding(bFinding, true);
        QScopedValueRollback<bool> internal(bInternalMove, true);
        flexgrid->setRow(row);
        flexgrid->setCol(col);
        return;
    }
}

} // namespace PanelKestrin
