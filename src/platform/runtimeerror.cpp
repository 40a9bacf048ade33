#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>

namespace PanelKestrin {

RuntimeError::RuntimeError(int number, const QString &description, const QString &source)
    : std::runtime_error(QString(QStringLiteral("Run-time error %1: %2"))
                             .arg(number)
                             .arg(description.isEmpty() ? standardDescription(number) : description)
                             .toStdString()),
      m_number(number),
      m_description(description.isEmpty() ? standardDescription(number) : description),
      m_source(source)
{
}

QString RuntimeError::standardDescription(int number)
{
    switch (number) {
    case ErrInvalidProcedureCall: return QStringLiteral("Invalid procedure call or argument");
    case ErrOverflow: return QStringLiteral("Overflow");
    case ErrSubscriptOutOfRange: return QStringLiteral("Subscript out of range");
    case ErrTypeMismatch: return QStringLiteral("Type mismatch");
    case ErrObjectNotSet: return QStringLiteral("Object variable or With block variable not set");
    case ErrInternalError: return QStringLiteral("Internal error");
    case ErrInvalidUseOfNull: return QStringLiteral("Invalid use of Null");
    case ErrInvalidPropertyValue: return QStringLiteral("Invalid property value");
    case ErrInvalidGridIndex: return QStringLiteral("Invalid property array index");
    case ErrReadOnlyProperty: return QStringLiteral("Set not supported (read-only property)");
    case ErrMemberNotSupported: return QStringLiteral("Object doesn't support this property or method");
    case ErrWrongArgumentCount:
        return QStringLiteral("Wrong number of arguments or invalid property assignment");
    default: return QStringLiteral("Application-defined or object-defined error");
    }
}

void ErrObject::Clear()
{
    Number = 0;
    Description.clear();
    Source.clear();
}

void ErrObject::Raise(int number, const QString &source, const QString &description)
{
    Number = number;
    Source = source.isEmpty() ? QCoreApplication::applicationName() : source;
    Description = description.isEmpty() ? RuntimeError::standardDescription(number) : description;
}

void ErrObject::setFrom(const RuntimeError &error)
{
    Number = error.Number();
    Description = error.Description();
    Source = error.Source();
}

ErrObject &Err()
{
    static ErrObject pending;
    return pending;
}

} // namespace PanelKestrin
