#pragma once

#include <PanelKestrin/panelkestrin_export.h>
#include <PanelKestrin/runtimeerror.h>

#include <QString>
#include <exception>
#include <functional>

namespace PanelKestrin {

using ErrorReporter = std::function<void(const RuntimeError &error)>;

// Shows a run-time error that reached an event boundary. Default: a critical message box
// (through MsgBox, style 16) reading "Run-time error '<number>':", a blank line and the
// description, titled with the error's source or else the application's display name.
PANELKESTRIN_EXPORT void ReportError(const RuntimeError &error);

// Replaces the reporter (tests collect errors, hosts log them); an empty function restores
// the message box. Returns the reporter replaced.
PANELKESTRIN_EXPORT ErrorReporter setErrorReporter(ErrorReporter reporter);

namespace detail {
// What guardEvent does with what it caught: makes it the pending error (Err()) and reports
// it. Never throws; a failing reporter is logged.
PANELKESTRIN_EXPORT void reportCaught(const QString &where, const RuntimeError &error) noexcept;
PANELKESTRIN_EXPORT void reportCaught(const QString &where, const std::exception &error) noexcept;
PANELKESTRIN_EXPORT void reportUnknownCaught(const QString &where) noexcept;
} // namespace detail

// Runs body at the boundary of a user event (a slot handling a click, a key, a focus change)
// so that no exception reaches Qt's event loop. A RuntimeError is reported as it is (its
// source, when empty, becomes `where`); any other exception as error 51 "Internal error" with
// its message and `where`. Whatever was caught also becomes the pending error, Err(). Returns
// true when body ran to its end.
template <typename F>
bool guardEvent(const QString &where, F &&body) noexcept
{
    try {
        std::forward<F>(body)();
        return true;
    } catch (const RuntimeError &e) {
        detail::reportCaught(where, e);
    } catch (const std::exception &e) {
        detail::reportCaught(where, e);
    } catch (...) {
        detail::reportUnknownCaught(where);
    }
    return false;
}

} // namespace PanelKestrin
