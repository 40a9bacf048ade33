#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <stdexcept>

namespace PanelKestrin {

// The classic run-time error numbers that the controls raise and that hosts test for.
enum ErrNumber : int {
    ErrInvalidProcedureCall = 5,
    ErrOverflow = 6,
    ErrOutOfMemory = 7,
    ErrSubscriptOutOfRange = 9,
    ErrTypeMismatch = 13,
    ErrObjectNotSet = 91,
    ErrInternalError = 51,
    ErrInvalidUseOfNull = 94,
    ErrInvalidPropertyValue = 380,
    ErrInvalidGridIndex = 381,
    ErrReadOnlyProperty = 383,
    ErrMemberNotSupported = 438,
    ErrWrongArgumentCount = 450,
};

// A run-time error thrown out of a public member where a failure reaches the caller.
// Carries the classic number, a description saying what failed and where, and the source.
class PANELKESTRIN_EXPORT RuntimeError : public std::runtime_error
{
public:
    explicit RuntimeError(int number, const QString &description = QString(),
                          const QString &source = QString());

    int Number() const { return m_number; }
    QString Description() const { return m_description; }
    QString Source() const { return m_source; }

    // The standard wording for a number ("Subscript out of range" for 9 ...).
    static QString standardDescription(int number);

private:
    int m_number;
    QString m_description;
    QString m_source;
};

// The pending-error object: hosts set it (for example in a move handler) and the navigation
// toolbar reports it. One per process, used on the user-interface thread only.
class PANELKESTRIN_EXPORT ErrObject
{
public:
    int Number = 0;
    QString Description;
    QString Source;

    void Clear();
    // Makes the error pending; an empty description takes the standard wording of the number.
    void Raise(int number, const QString &source = QString(), const QString &description = QString());
    void setFrom(const RuntimeError &error);
};

PANELKESTRIN_EXPORT ErrObject &Err();

} // namespace PanelKestrin
