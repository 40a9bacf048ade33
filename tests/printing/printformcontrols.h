// The print query form's controls by name, and the user's way out of it, for the form's tests.
#pragma once

#include <QAbstractButton>
#include <QDialog>
#include <QTest>

template <typename W>
W *control(QWidget *form, const char *name)
{
    W *w = form->findChild<W *>(QLatin1String(name));
    if (!w)
        qFatal("the print query form has no %s", name);
    return w;
}

// What the user does to leave the form.
inline void cancel(QWidget *form)
{
    QTest::mouseClick(control<QAbstractButton>(form, "cmdcancel"), Qt::LeftButton);
}
