#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/msgbox.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <utility>

namespace PanelKestrin {

namespace {

ErrorReporter &errorReporter()
{
    static ErrorReporter reporter;
    return reporter;
}

void reportSafely(const RuntimeError &error) noexcept
{
    try {
        Err().setFrom(error);
        ReportError(error);
    } catch (...) {
        // The report itself failed (a reporter or message box handler threw): there is no one
        // left to tell but the log.
        qWarning("Run-time error %d not reported: %s", error.Number(), qPrintable(error.Description()));
    }
}

} // namespace

void ReportError(const RuntimeError &error)
{
    if (const ErrorReporter reporter = errorReporter()) {
        reporter(error);
        return;
    }
    const QString prompt =
        QCoreApplication::translate("PanelKestrin::ReportError", "Run-time error '%1':").arg(error.Number())
        + QStringLiteral("\n\n") + error.Description();
    MsgBox(prompt, vbCritical,
           error.Source().isEmpty() ? QGuiApplication::applicationDisplayName() : error.Source());
}

ErrorReporter setErrorReporter(ErrorReporter reporter)
{
    return std::exchange(errorReporter(), std::move(reporter));
}

namespace detail {

void reportCaught(const QString &where, const RuntimeError &error) noexcept
{
    try {
        if (error.Source().isEmpty())
            reportSafely(RuntimeError(error.Number(), error.Description(), where));
        else
            reportSafely(error);
    } catch (...) {
        qWarning("Run-time error %d in %s not reported", error.Number(), qPrintable(where));
    }
}

void reportCaught(const QString &where, const std::exception &error) noexcept
{
    try {
        const QString description = QCoreApplication::translate("PanelKestrin::ReportError",
                                                                "Internal error in %1: %2")
                                        .arg(where, QString::fromLocal8Bit(error.what()));
        reportSafely(RuntimeError(ErrInternalError, description, where));
    } catch (...) {
        qWarning("Internal error in %s not reported: %s", qPrintable(where), error.what());
    }
}

void reportUnknownCaught(const QString &where) noexcept
{
    try {
        const QString description = QCoreApplication::translate("PanelKestrin::ReportError",
                                                                "Internal error in %1: unknown exception")
                                        .arg(where);
        reportSafely(RuntimeError(ErrInternalError, description, where));
    } catch (...) {
        qWarning("Internal error in %s not reported", qPrintable(where));
    }
}

} // namespace detail

} // namespace PanelKestrin
