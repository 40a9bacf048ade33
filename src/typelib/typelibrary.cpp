#include <PanelKestrin/typelibrary.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtGlobal>

namespace PanelKestrin {

namespace {

// The identity table is a resource of the library; a table that does not read is a build
// fault, so it stops the program at once rather than publishing half a library.
QJsonObject readTable()
{
    QFile file(QStringLiteral(":/panelkestrin/typelib/identities.json"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("PanelKestrin: the identity table resource is missing");
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &error);
    if (!doc.isObject())
        qFatal("PanelKestrin: the identity table does not read: %s", qPrintable(error.errorString()));
    return doc.object();
}

qint32 number(const QJsonValue &value)
{
    if (value.isDouble())
        return qint32(value.toInteger());
    return qint32(value.toString().toUInt(nullptr, 0));
}

QUuid guid(const QJsonObject &o)
{
    return QUuid::fromString(o.value(QLatin1String("guid")).toString());
}

TypeLibParam param(const QJsonObject &o)
{
    TypeLibParam p;
    p.name = o.value(QLatin1String("name")).toString();
    p.type = o.value(QLatin1String("type")).toString();
    p.byRef = o.value(QLatin1String("byref")).toBool();
    p.optional = o.value(QLatin1String("optional")).toBool();
    return p;
}

TypeLibMember member(const QJsonObject &o, bool isEvent)
{
    TypeLibMember m;
    m.dispId = number(o.value(QLatin1String("id")));
    m.name = o.value(QLatin1String("name")).toString();
    m.helpString = o.value(QLatin1String("help")).toString();
    m.varArg = o.value(QLatin1String("vararg")).toBool();
    for (const QJsonValue &p : o.value(QLatin1String("params")).toArray())
        m.params.append(param(p.toObject()));
    const QString kind = o.value(QLatin1String("kind")).toString();
    if (isEvent) {
        m.kind = TypeLibMember::Event;
        // Every event parameter is handed by reference, so that the host can change it.
        for (TypeLibParam &p : m.params)
            p.byRef = true;
    } else if (kind == QLatin1String("method")) {
        m.kind = TypeLibMember::Method;
        m.type = o.value(QLatin1String("returns")).toString();
    } else {
        m.kind = kind == QLatin1String("variable") ? TypeLibMember::Variable : TypeLibMember::Property;
        m.type = o.value(QLatin1String("type")).toString();
        const QStringList access = o.value(QLatin1String("access")).toString().split(QLatin1Char(' '));
        m.get = access.contains(QLatin1String("get"));
        m.put = access.contains(QLatin1String("put"));
        m.putRef = access.contains(QLatin1String("putref"));
        TypeLibParam value;
        value.name = o.value(QLatin1String("param")).toString(m.name);
        value.type = m.type;
        value.byRef = o.value(QLatin1String("byref")).toBool();
        m.params.append(value);
    }
    return m;
}

TypeLibInterface interfaceOf(const QJsonObject &o, bool isEvent)
{
    TypeLibInterface i;
    i.name = o.value(QLatin1String("name")).toString();
    i.guid = guid(o);
    for (const QJsonValue &m : o.value(QLatin1String("members")).toArray())
        i.members.append(member(m.toObject(), isEvent));
    return i;
}

TypeLibrary load()
{
    const QJsonObject table = readTable();
    TypeLibrary lib;
    const QJsonObject library = table.value(QLatin1String("library")).toObject();
    lib.name = library.value(QLatin1String("name")).toString();
    lib.helpString = library.value(QLatin1String("help")).toString();
    lib.guid = guid(library);
    const QStringList version = library.value(QLatin1String("version")).toString().split(QLatin1Char('.'));
    lib.majorVersion = quint16(version.value(0).toUInt());
    lib.minorVersion = quint16(version.value(1).toUInt());
    lib.lcid = quint32(number(library.value(QLatin1String("lcid"))));
    lib.fileVersion = library.value(QLatin1String("fileVersion")).toString();

    const QJsonObject imports = table.value(QLatin1String("imports")).toObject();
    const QJsonObject recordset = imports.value(QLatin1String("recordset")).toObject();
    lib.recordsetInterface = recordset.value(QLatin1String("name")).toString();
    lib.recordsetImport = recordset.value(QLatin1String("idl")).toString();
    const QJsonObject dataSource = imports.value(QLatin1String("dataSource")).toObject();
    lib.dataSourceInterface = dataSource.value(QLatin1String("name")).toString();
    lib.dataSourceGuid = guid(dataSource);

    for (const QJsonValue &v : table.value(QLatin1String("enums")).toArray()) {
        const QJsonObject o = v.toObject();
        TypeLibEnum e{o.value(QLatin1String("name")).toString(), guid(o), {}};
        for (const QJsonValue &pair : o.value(QLatin1String("values")).toArray())
            e.values.append({pair.toArray().at(0).toString(), number(pair.toArray().at(1))});
        lib.enums.append(e);
    }
    for (const QJsonValue &v : table.value(QLatin1String("records")).toArray()) {
        const QJsonObject o = v.toObject();
        TypeLibRecord r{o.value(QLatin1String("name")).toString(), guid(o), {}};
        for (const QJsonValue &f : o.value(QLatin1String("fields")).toArray())
            r.fields.append(param(f.toObject()));
        lib.records.append(r);
    }
    for (const QJsonValue &v : table.value(QLatin1String("classes")).toArray()) {
        const QJsonObject o = v.toObject();
        lib.classes.append({o.value(QLatin1String("name")).toString(), guid(o),
                            interfaceOf(o.value(QLatin1String("interface")).toObject(), false),
                            interfaceOf(o.value(QLatin1String("events")).toObject(), true)});
    }
    return lib;
}

} // namespace

int TypeLibMember::requiredArguments() const
{
    if (kind == Variable || kind == Property)
        return 0;
    int n = 0;
    for (const TypeLibParam &p : params)
        n += p.optional ? 0 : 1;
    return varArg ? n - 1 : n;
}

int TypeLibMember::maximumArguments() const
{
    if (kind == Variable || kind == Property)
        return 0;
    return varArg ? -1 : int(params.size());
}

const TypeLibMember *TypeLibInterface::member(qint32 dispId) const
{
    for (const TypeLibMember &m : members) {
        if (m.dispId == dispId)
            return &m;
    }
    return nullptr;
}

const TypeLibMember *TypeLibInterface::member(const QString &name) const
{
    for (const TypeLibMember &m : members) {
        if (m.name.compare(name, Qt::CaseInsensitive) == 0)
            return &m;
    }
    return nullptr;
}

const TypeLibClass *TypeLibrary::findClass(const QString &className) const
{
    for (const TypeLibClass &c : classes) {
        if (c.name.compare(className, Qt::CaseInsensitive) == 0)
            return &c;
    }
    return nullptr;
}

const TypeLibClass *TypeLibrary::findClass(const QUuid &classGuid) const
{
    for (const TypeLibClass &c : classes) {
        if (c.guid == classGuid)
            return &c;
    }
    return nullptr;
}

const TypeLibrary &PublishedTypeLibrary()
{
    static const TypeLibrary library = load();
    return library;
}

} // namespace PanelKestrin
