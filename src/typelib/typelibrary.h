#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QList>
#include <QPair>
#include <QString>
#include <QUuid>

namespace PanelKestrin {

// The published identities of the library: what host forms bind to, late through the dispatch
// numbers and names, early through the GUIDs. Read once from the identity table compiled into
// the library; fixed for the life of the library and never changed between versions.

// A parameter of a method or event, a field of a record, or the value of a property put.
// Types are spelled as the type description spells them (BSTR, short, long, VARIANT_BOOL,
// VARIANT, DATE, double, OLE_COLOR, SAFEARRAY(VARIANT), _Recordset*, IDispatch*, ...).
struct TypeLibParam
{
    QString name;
    QString type;
    bool byRef = false;
    bool optional = false;
};

struct TypeLibMember
{
    enum Kind { Variable, Property, Method, Event };

    qint32 dispId = 0;
    QString name;
    Kind kind = Method;
    // The value type of a variable or property, the result type of a method ("" for none).
    QString type;
    // Accessors of a variable or property.
    bool get = false;
    bool put = false;
    bool putRef = false;
    // Method whose last parameter collects all remaining arguments as one array.
    bool varArg = false;
    QString helpString;
    // Method and event parameters, in order; for a property, its one put parameter.
    QList<TypeLibParam> params;

    // Arguments a call must pass at least and at most (a vararg method: at least, no most = -1).
    int requiredArguments() const;
    int maximumArguments() const;
};

struct TypeLibInterface
{
    QString name;
    QUuid guid;
    QList<TypeLibMember> members;

    // Null when the interface has no such member; names match case-insensitively.
    const TypeLibMember *member(qint32 dispId) const;
    const TypeLibMember *member(const QString &name) const;
};

struct TypeLibClass
{
    QString name;
    QUuid guid;
    TypeLibInterface defaultInterface; // "_Name"
    TypeLibInterface eventInterface;   // "__Name"
};

struct TypeLibEnum
{
    QString name;
    QUuid guid;
    QList<QPair<QString, qint32>> values;
};

struct TypeLibRecord
{
    QString name;
    QUuid guid;
    QList<TypeLibParam> fields;
};

struct TypeLibrary
{
    QString name;
    QString helpString;
    QUuid guid;
    quint16 majorVersion = 0;
    quint16 minorVersion = 0;
    quint32 lcid = 0;
    QString fileVersion;
    // Interfaces of other libraries that members are typed with: the recordset interface (with
    // the description file that declares it) and the data-binding library's data source.
    QString recordsetInterface;
    QString recordsetImport;
    QString dataSourceInterface;
    QUuid dataSourceGuid;
    QList<TypeLibEnum> enums;
    QList<TypeLibRecord> records;
    QList<TypeLibClass> classes;

    // Null when there is no such class; names match case-insensitively.
    const TypeLibClass *findClass(const QString &name) const;
    const TypeLibClass *findClass(const QUuid &guid) const;
};

// The library's identities.
PANELKESTRIN_EXPORT const TypeLibrary &PublishedTypeLibrary();

} // namespace PanelKestrin
