#pragma once

#include <PanelKestrin/dataerrors.h>

#include <QString>

namespace PanelKestrin {

// The classic wording of a data error number ("Operation is not allowed when the object is
// closed." for 3704 ...); empty for the two numbers whose text is always the database's own.
QString dataErrorText(int number);

// Throws RuntimeError(number) whose description is the classic wording followed by the
// detail saying what failed and where.
[[noreturn]] void raiseDataError(int number, const QString &detail, const QString &source);

} // namespace PanelKestrin
