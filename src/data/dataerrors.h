#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QtGlobal>

namespace PanelKestrin {

// Error numbers raised by Connection, Recordset and Field (as RuntimeError::Number()), the
// numbers hosts of the classic recordset model already test for.
enum DataErrorNumber : int {
    ErrBadArguments = 3001,        // wrong type, out of range or in conflict (bad bookmark ...)
    ErrNoCurrentRecord = 3021,     // BOF or EOF is True: the operation needs a current record
    ErrNotCapable = 3251,          // the provider cannot do what was asked
    ErrItemNotFound = 3265,        // no field of that name or ordinal
    ErrObjectClosed = 3704,        // the object is closed
    ErrObjectOpen = 3705,          // the object is already open
    ErrProviderNotFound = 3706,    // unknown provider in the connection string
    ErrConnectionInvalid = 3709,   // no connection, or a closed one
    ErrOperationCancelled = 3712,  // a WillMove handler cancelled the move
    ErrOpenFailed = -2147467259,   // the database could not be opened
    ErrCommandFailed = -2147217900 // the database rejected the statement
};

} // namespace PanelKestrin

