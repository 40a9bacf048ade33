#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QVariant>

namespace PanelKestrin {

// Empty is an invalid QVariant; Null is a QVariant holding nullptr. A database NULL read
// by a recordset is Null.
inline QVariant Empty() { return QVariant(); }
inline QVariant Null() { return QVariant::fromValue(nullptr); }
inline bool isEmpty(const QVariant &v) { return !v.isValid(); }
inline bool isNull(const QVariant &v) { return v.isValid() && v.metaType().id() == QMetaType::Nullptr; }

} // namespace PanelKestrin
