#pragma once

#include <PanelKestrin/twips.h>

#include <QLabel>
#include <QLatin1String>
#include <QWidget>

namespace PanelKestrin {

// Places a control the way a form is designed: left, top, width and height in twips.
inline void placeInTwips(QWidget *w, int left, int top, int width, int height)
{
    w->setGeometry(TwipsToPixelsX(left, w), TwipsToPixelsY(top, w), TwipsToPixelsX(width, w),
                   TwipsToPixelsY(height, w));
}

// Gives a constituent control its published name.
template <typename W>
W *named(W *w, const char *name)
{
    w->setObjectName(QLatin1String(name));
    return w;
}

// A caption beside a box of the same row (top is the box's).
inline QLabel *captionLabel(QWidget *parent, const char *name, const QString &caption, int left, int top, int width)
{
    QLabel *l = named(new QLabel(caption, parent), name);
    placeInTwips(l, left, top + 30, width, 255);
    return l;
}

} // namespace PanelKestrin
