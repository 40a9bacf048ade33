#include <PanelKestrin/idlwriter.h>

#include <QStringList>

namespace PanelKestrin {

namespace {

QString uuid(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString hex(qint32 dispId)
{
    return QStringLiteral("0x%1").arg(quint32(dispId), 8, 16, QLatin1Char('0'));
}

QString quoted(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString parameter(const TypeLibParam &p)
{
    QStringList attributes{QStringLiteral("in")};
    if (p.byRef)
        attributes << QStringLiteral("out");
    if (p.optional)
        attributes << QStringLiteral("optional");
    return QStringLiteral("[%1] %2%3 %4").arg(attributes.join(QLatin1String(", ")), p.type,
                                               p.byRef ? QStringLiteral("*") : QString(), p.name);
}

QString parameters(const QList<TypeLibParam> &params)
{
    QStringList list;
    for (const TypeLibParam &p : params)
        list << parameter(p);
    return list.join(QLatin1String(", "));
}

QString attributes(const TypeLibMember &m, const QString &accessor)
{
    QStringList list{QStringLiteral("id(%1)").arg(hex(m.dispId))};
    if (!accessor.isEmpty())
        list << accessor;
    if (m.varArg)
        list << QStringLiteral("vararg");
    if (!m.helpString.isEmpty())
        list << QStringLiteral("helpstring(%1)").arg(quoted(m.helpString));
    return QLatin1Char('[') + list.join(QLatin1String(", ")) + QLatin1Char(']');
}

// One line per accessor of a variable or property; one line for a method or event.
QStringList memberLines(const TypeLibMember &m)
{
    QStringList lines;
    switch (m.kind) {
    case TypeLibMember::Variable:
    case TypeLibMember::Property:
        if (m.get)
            lines << QStringLiteral("%1 %2 %3();").arg(attributes(m, QStringLiteral("propget")), m.type, m.name);
        if (m.put)
            lines << QStringLiteral("%1 void %2(%3);").arg(attributes(m, QStringLiteral("propput")), m.name, parameter(m.params.value(0)));
        if (m.putRef)
            lines << QStringLiteral("%1 void %2(%3);").arg(attributes(m, QStringLiteral("propputref")), m.name, parameter(m.params.value(0)));
        break;
    case TypeLibMember::Method:
    case TypeLibMember::Event:
        lines << QStringLiteral("%1 %2 %3(%4);").arg(attributes(m, QString()), m.type.isEmpty() ? QStringLiteral("void") : m.type,
                                                     m.name, parameters(m.params));
        break;
    }
    return lines;
}

void writeDispinterface(QStringList &out, const TypeLibInterface &i, const QString &extraAttributes)
{
    out << QStringLiteral("    [uuid(%1)%2]").arg(uuid(i.guid), extraAttributes)
        << QStringLiteral("    dispinterface %1").arg(i.name) << QStringLiteral("    {")
        << QStringLiteral("    properties:") << QStringLiteral("    methods:");
    for (const TypeLibMember &m : i.members) {
        for (const QString &line : memberLines(m))
            out << QStringLiteral("        ") + line;
    }
    out << QStringLiteral("    };") << QString();
}

} // namespace

QString TypeLibraryIdl(const TypeLibrary &lib)
{
    QStringList out;
    out << QStringLiteral("// %1 %2.%3: the published controls, their interfaces, enumerations and records.")
               .arg(lib.name).arg(lib.majorVersion).arg(lib.minorVersion)
        << QStringLiteral("// Library file version %1. Written from the library's identity table.").arg(lib.fileVersion)
        << QString()
        << QStringLiteral("import \"ocidl.idl\";")
        << QStringLiteral("import \"%1\"; // %2, the recordset interface").arg(lib.recordsetImport, lib.recordsetInterface)
        << QString()
        << QStringLiteral("// The data source interface of the data-binding library.")
        << QStringLiteral("[uuid(%1), object, oleautomation]").arg(uuid(lib.dataSourceGuid))
        << QStringLiteral("interface %1 : IUnknown").arg(lib.dataSourceInterface)
        << QStringLiteral("{") << QStringLiteral("};") << QString()
        << QStringLiteral("[uuid(%1), version(%2.%3), lcid(0x%4), helpstring(%5)]")
               .arg(uuid(lib.guid)).arg(lib.majorVersion).arg(lib.minorVersion).arg(lib.lcid, 0, 16).arg(quoted(lib.helpString))
        << QStringLiteral("library %1").arg(lib.name) << QStringLiteral("{")
        << QStringLiteral("    importlib(\"stdole2.tlb\");") << QString();

    for (const TypeLibClass &c : lib.classes)
        out << QStringLiteral("    dispinterface %1;").arg(c.defaultInterface.name);
    out << QString();

    for (const TypeLibEnum &e : lib.enums) {
        out << QStringLiteral("    typedef [uuid(%1)] enum %2").arg(uuid(e.guid), e.name) << QStringLiteral("    {");
        QStringList values;
        for (const auto &[name, value] : e.values)
            values << QStringLiteral("        %1 = %2").arg(name).arg(value);
        out << values.join(QLatin1String(",\n")) << QStringLiteral("    } %1;").arg(e.name) << QString();
    }
    for (const TypeLibRecord &r : lib.records) {
        out << QStringLiteral("    typedef [uuid(%1)] struct %2").arg(uuid(r.guid), r.name) << QStringLiteral("    {");
        for (const TypeLibParam &f : r.fields)
            out << QStringLiteral("        %1 %2;").arg(f.type, f.name);
        out << QStringLiteral("    } %1;").arg(r.name) << QString();
    }
    for (const TypeLibClass &c : lib.classes) {
        writeDispinterface(out, c.defaultInterface, QStringLiteral(", hidden"));
        writeDispinterface(out, c.eventInterface, QString());
        out << QStringLiteral("    [uuid(%1), control]").arg(uuid(c.guid))
            << QStringLiteral("    coclass %1").arg(c.name) << QStringLiteral("    {")
            << QStringLiteral("        [default] dispinterface %1;").arg(c.defaultInterface.name)
            << QStringLiteral("        [default, source] dispinterface %1;").arg(c.eventInterface.name)
            << QStringLiteral("    };") << QString();
    }
    out << QStringLiteral("};");
    return out.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace PanelKestrin
