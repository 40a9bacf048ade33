#include "data/dataerror_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>

namespace PanelKestrin {

QString dataErrorText(int number)
{
    const char *text = nullptr;
    switch (number) {
    case ErrBadArguments:
        text = "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another.";
        break;
    case ErrNoCurrentRecord:
        text = "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current record.";
        break;
    case ErrNotCapable:
        text = "Operation is not supported by this provider.";
        break;
    case ErrItemNotFound:
        text = "Item cannot be found in the collection corresponding to the requested name or ordinal.";
        break;
    case ErrObjectClosed:
        text = "Operation is not allowed when the object is closed.";
        break;
    case ErrObjectOpen:
        text = "Operation is not allowed when the object is open.";
        break;
    case ErrProviderNotFound:
        text = "Provider cannot be found. It may not be properly installed.";
        break;
    case ErrConnectionInvalid:
        text = "The connection cannot be used to perform this operation. It is either closed or invalid in this context.";
        break;
    case ErrOperationCancelled:
        text = "Operation has been cancelled by the user.";
        break;
    default:
        return QString();
    }
    return QCoreApplication::translate("PanelKestrin::DataError", text);
}

void raiseDataError(int number, const QString &detail, const QString &source)
{
    const QString text = dataErrorText(number);
    QString description = text;
    if (!detail.isEmpty())
        description = text.isEmpty() ? detail : text + QLatin1Char(' ') + detail;
    throw RuntimeError(number, description, source);
}

} // namespace PanelKestrin
