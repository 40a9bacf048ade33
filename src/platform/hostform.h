#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QVariant>
#include <QVariantList>

class QObject;
class QWidget;

namespace PanelKestrin {

// How CallByName reaches a member: call it, read it, or assign it (VbSet assigns an object).
enum CallType : int {
    VbMethod = 1,
    VbGet = 2,
    VbLet = 4,
    VbSet = 8,
};

// Late-bound access to a member of Object by name, matched case-insensitively against public
// slots, Q_INVOKABLE methods and Q_PROPERTYs (most derived declaration first):
// - VbMethod calls the method whose parameter count matches Args (a property without
//   arguments is read);
// - VbGet reads the property, or calls a method (e.g. an indexed getter taking Args);
// - VbLet / VbSet call "set<ProcName>" with Args when the class offers it as a public, invokable
//   member (write-only and indexed properties, and run-time assignments whose property writer
//   is for form files), else write the property with Args' single value.
// Arguments are converted to the parameter types. Returns the method's return value (Empty for
// none) or the property's value. On a QWidget, "Left", "Top", "Width" and "Height" that its
// class does not declare itself are its frame geometry in twips (read and written).
// Raises RuntimeError 91 for a null Object, 438 naming the member and the class when nothing
// matches, 450 for a wrong argument count, 13 for an argument that does not convert, 94 for a
// Null argument, 6 for a number out of the parameter's range, 383 for a read-only property.
// By-reference parameters receive copies of the arguments. Exceptions thrown by the member
// itself reach the caller unchanged.
PANELKESTRIN_EXPORT QVariant CallByName(QObject *Object, const QString &ProcName, CallType Call,
                                        const QVariantList &Args = {});

// The form that hosts a control: its top-level window (the control itself when it has no
// parent). Null for a null control.
PANELKESTRIN_EXPORT QWidget *HostForm(const QWidget *control);

// Unloads a form by closing it, so that the form's own close handling runs and may refuse.
// Returns whether the form closed. Raises RuntimeError 91 for a null form.
PANELKESTRIN_EXPORT bool UnloadForm(QWidget *form);

} // namespace PanelKestrin
