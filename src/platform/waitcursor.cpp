#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/waitcursor.h>

#include <QCursor>
#include <QGuiApplication>

namespace PanelKestrin {

namespace {

bool haveGui()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

Qt::CursorShape shapeFor(int pointer)
{
    static const Qt::CursorShape shapes[] = {
        Qt::ArrowCursor,     Qt::ArrowCursor,       Qt::CrossCursor,     Qt::IBeamCursor,
        Qt::ArrowCursor,     Qt::SizeAllCursor,     Qt::SizeBDiagCursor, Qt::SizeVerCursor,
        Qt::SizeFDiagCursor, Qt::SizeHorCursor,     Qt::UpArrowCursor,   Qt::WaitCursor,
        Qt::ForbiddenCursor, Qt::BusyCursor,        Qt::WhatsThisCursor, Qt::SizeAllCursor,
    };
    return shapes[pointer];
}

// The procedural pointer owns at most one entry of the override-cursor stack.
int currentPointer = vbDefault;

} // namespace

WaitCursor::WaitCursor()
    : m_shown(haveGui())
{
    if (m_shown)
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

WaitCursor::~WaitCursor()
{
    if (m_shown && haveGui())
        QGuiApplication::restoreOverrideCursor();
}

void setMousePointer(int pointer)
{
    if (pointer < vbDefault || pointer > vbSizeAll)
        throw RuntimeError(ErrInvalidPropertyValue, QString(), QStringLiteral("MousePointer"));
    if (haveGui()) {
        if (pointer == vbDefault) {
            if (currentPointer != vbDefault)
                QGuiApplication::restoreOverrideCursor();
        } else if (currentPointer == vbDefault) {
            QGuiApplication::setOverrideCursor(QCursor(shapeFor(pointer)));
        } else {
            QGuiApplication::changeOverrideCursor(QCursor(shapeFor(pointer)));
        }
    }
    currentPointer = pointer;
}

int MousePointer()
{
    return currentPointer;
}

} // namespace PanelKestrin
