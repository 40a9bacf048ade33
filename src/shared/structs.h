#pragma once

#include <QString>
#include <QtGlobal>

namespace PanelKestrin {

// Description of one data column of the grid: type letter ("C", "N", "D", "B" or empty),
// maximum characters or total digits, digits after the point, and whether blank is allowed.
struct RecStruct {
    QString DataType;
    qint16 Length = 0;
    qint16 Decimal = 0;
    bool Null = false;
};

// Rules of one grid column: the editor may open there, the value comes through the help
// look-up, the column must be filled before a new row is accepted.
struct GridStruct {
    bool ColEnable = false;
    bool HelpInvoked = false;
    bool ColMandatory = false;
};

} // namespace PanelKestrin
