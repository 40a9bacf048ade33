// The published identities: pinned GUIDs and dispatch numbers, the numbering scheme, the
// enumerations and records, and every member bound to a real member of a live control.

#include <PanelKestrin/controlfactory.h>
#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/typelibrary.h>
#include <PanelKestrin/usercontrol1.h>

#include "typelib/dispatchbinding_p.h"

#include <QMetaEnum>
#include <QtTest>
#include <memory>

using namespace PanelKestrin;

namespace {

const TypeLibClass &cls(const QString &name)
{
    const TypeLibClass *c = PublishedTypeLibrary().findClass(name);
    if (!c)
        qFatal("no class %s", qPrintable(name));
    return *c;
}

std::unique_ptr<QWidget> create(const QString &name)
{
    return std::unique_ptr<QWidget>(CreateControl(name));
}

// Members a control declares for its own use or the container's, outside its published interface.
const QStringList unpublished = {
    QStringLiteral("InitProperties"), QStringLiteral("PropertyChanged"), QStringLiteral("pop_Click"),
    QStringLiteral("CmdGridFind_Click")};

} // namespace

class tst_TypeLibrary : public QObject
{
    Q_OBJECT

private slots:
    void libraryIdentity()
    {
        const TypeLibrary &lib = PublishedTypeLibrary();
        QCOMPARE(lib.name, QStringLiteral("PanelKestrin"));
        QCOMPARE(lib.helpString, QStringLiteral("PanelKestrin"));
        QCOMPARE(lib.guid, QUuid(QStringLiteral("{294E0F8D-B61D-4E1D-AAAC-F559A7F383F8}")));
        QCOMPARE(lib.majorVersion, quint16(7));
        QCOMPARE(lib.minorVersion, quint16(0));
        QCOMPARE(lib.lcid, quint32(0x409));
        QCOMPARE(lib.fileVersion, QStringLiteral("5.02.0011"));
        QCOMPARE(lib.classes.size(), 6);
    }

    void classIdentities_data()
    {
        QTest::addColumn<QString>("classGuid");
        QTest::addColumn<QString>("interfaceGuid");
        QTest::addColumn<QString>("eventsGuid");
        QTest::newRow("UserControl1") << "6DB0A787-FB46-422B-8B47-BC940F86B5CA" << "AB4D00B2-DDF2-4075-9EF9-C187FBDEA9E8" << "069A841E-5355-4A4C-91AB-61EE7AF0E099";
        QTest::newRow("gridcontrol") << "27B0CE4E-7577-43BB-B565-FFAFEC92CDD1" << "C47009CE-28F8-49AD-98AF-D6F1FEB65D8F" << "E5839832-42C5-4C8D-B234-DB0B880626F7";
        QTest::newRow("GridPanel") << "A5166076-94C9-44BE-8A48-2B8F4273F1D2" << "5CFA411B-A57B-4865-B7E5-F575A6E7F34F" << "70480055-CC4D-41DE-8CBB-FC511CD267BF";
        QTest::newRow("DTControl") << "6387806E-7835-46BC-8651-F8CD52CB13A1" << "5549D837-7BDF-440C-8202-D4BE02A69240" << "5653D198-F957-46C3-AE5F-A0C2DED986B7";
        QTest::newRow("TrnControl") << "3B472E8D-67ED-4616-A373-2A7A0AF291FD" << "37761446-B273-477E-9E8A-04D7FA5B219A" << "EE9EA081-0DCC-4D8C-AF9D-FE12FE6D64D0";
        QTest::newRow("PrintSetup") << "374EEE3C-88D8-4159-996B-354ED4D92C17" << "FFDB9439-0BE1-4BBD-AD8D-2CCBA0C2993E" << "15436278-C4BE-4F3B-AA49-C603AFA8A9D1";
    }

    void classIdentities()
    {
        QFETCH(QString, classGuid);
        QFETCH(QString, interfaceGuid);
        QFETCH(QString, eventsGuid);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const TypeLibClass &c = cls(name);
        QCOMPARE(c.name, name);
        QCOMPARE(c.guid, QUuid::fromString(classGuid));
        QCOMPARE(c.defaultInterface.name, QLatin1Char('_') + name);
        QCOMPARE(c.defaultInterface.guid, QUuid::fromString(interfaceGuid));
        QCOMPARE(c.eventInterface.name, QStringLiteral("__") + name);
        QCOMPARE(c.eventInterface.guid, QUuid::fromString(eventsGuid));
    }

    void everyGuidIsDistinct()
    {
        const TypeLibrary &lib = PublishedTypeLibrary();
        QSet<QUuid> seen{lib.guid};
        int count = 1;
        for (const TypeLibClass &c : lib.classes)
            seen << c.guid << c.defaultInterface.guid << c.eventInterface.guid, count += 3;
        for (const TypeLibEnum &e : lib.enums)
            seen << e.guid, ++count;
        for (const TypeLibRecord &r : lib.records)
            seen << r.guid, ++count;
        QCOMPARE(count, 1 + 18 + 3 + 2);
        QCOMPARE(int(seen.size()), count);
        QVERIFY(!seen.contains(QUuid()));
    }

    void exampleNumbers_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("member");
        QTest::addColumn<quint32>("dispId");
        const auto row = [](const char *control, const char *member, quint32 id) {
            QTest::addRow("%s.%s", control, member) << QString::fromLatin1(control) << QString::fromLatin1(member) << id;
        };
        row("UserControl1", "gAllowMoveFirst", 0x40030006);
        row("UserControl1", "gUnloadFomForQueryUnload", 0x40030011);
        row("gridcontrol", "gValue", 0x4003001E);
        row("gridcontrol", "bShowMenu", 0x40030021);
        row("TrnControl", "cmdenable", 0x6803000A);
        row("TrnControl", "srset", 0x68030009);
        row("TrnControl", "RptParameter", 0x68030001);
        row("TrnControl", "ReportToPrint", 0x68030000);
        row("DTControl", "BackColor", 0x6803000B);
        row("DTControl", "DataFieldName", 0x68030000);
        for (const char *toolbar : {"TrnControl", "UserControl1", "GridPanel"})
            row(toolbar, "Command1_Click", 0x6003000D);
        row("gridcontrol", "ChangeGridHeader", 0x6003000D);
        row("gridcontrol", "FixColSizes", 0x60030010);
        row("gridcontrol", "vColumnValue", 0x6003001A);
        row("gridcontrol", "vSetGridRowColValue", 0x6003001B);
        row("gridcontrol", "PopulateGrid", 0x6003002A);
        row("gridcontrol", "MakeStruct", 0x6003002B);
        row("gridcontrol", "Prevpage", 0x6003002D);
        row("gridcontrol", "LastRow", 0x60030030);
        row("gridcontrol", "ResetColRow", 0x60030031);
        row("gridcontrol", "SaveLastCol", 0x60030032);
        row("gridcontrol", "ColTotal", 0x60030033);
        row("gridcontrol", "SetGridValue", 0x60030034);
        row("gridcontrol", "MakeGridStructure", 0x60030035);
        row("gridcontrol", "GridRowAddnew", 0x60030036);
        row("gridcontrol", "GridRowDelete", 0x60030037);
        row("DTControl", "SetDateFormat", 0x6003000C);
        row("DTControl", "ValidDaysOfMonth", 0x60030014);
    }

    void exampleNumbers()
    {
        QFETCH(QString, control);
        QFETCH(QString, member);
        QFETCH(quint32, dispId);
        const TypeLibMember *m = cls(control).defaultInterface.member(member);
        QVERIFY(m);
        QCOMPARE(quint32(m->dispId), dispId);
        QCOMPARE(cls(control).defaultInterface.member(qint32(dispId)), m);
    }

    // Variables count up from their first number, property procedures count down to
    // 0x68030000 in declaration order, procedures stay in 0x6003xxxx, events count from 1.
    void numberingScheme_data()
    {
        QTest::addColumn<QString>("control");
        for (const TypeLibClass &c : PublishedTypeLibrary().classes)
            QTest::newRow(qPrintable(c.name)) << c.name;
    }

    void numberingScheme()
    {
        QFETCH(QString, control);
        const TypeLibClass &c = cls(control);
        QList<qint32> variables, properties;
        QSet<qint32> ids;
        for (const TypeLibMember &m : c.defaultInterface.members) {
            QVERIFY2(!ids.contains(m.dispId), qPrintable(m.name));
            ids << m.dispId;
            switch (m.kind) {
            case TypeLibMember::Variable: variables << m.dispId; break;
            case TypeLibMember::Property: properties << m.dispId; break;
            default: QCOMPARE(quint32(m.dispId) & 0xFFFF0000u, 0x60030000u);
            }
        }
        for (int i = 1; i < variables.size(); ++i)
            QCOMPARE(variables.at(i), variables.at(i - 1) + 1);
        for (int i = 0; i < properties.size(); ++i)
            QCOMPARE(quint32(properties.at(i)), quint32(0x68030000 + properties.size() - 1 - i));
        for (int i = 0; i < c.eventInterface.members.size(); ++i)
            QCOMPARE(c.eventInterface.members.at(i).dispId, i + 1);
    }

    void enumerations_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("guid");
        QTest::newRow("Formdeckbtn") << "btntop btnprev btnnext btnlast btnadd btnedit btndel btnsave btnfind btnprint btnquit btnundo" << "13B1FED0-BF1F-408C-8926-EE164397A0C0";
        QTest::newRow("Gridpanelbtn") << "btntop btnprev btnnext btnlast btnedit btnsave btnprint btnquit btnundo" << "3A089BEA-FF4C-4355-ADA1-E7034E2C2F4A";
        QTest::newRow("TrnControlBtn") << "btnadd btnedit btndel btnsave btnfind btnprint btnquit btnundo" << "FEB68DDE-01B1-41B0-A1FA-EF8D21B3B715";
    }

    // The table and the controls' own enumerations agree, value by value.
    void enumerations()
    {
        QFETCH(QString, names);
        QFETCH(QString, guid);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const TypeLibEnum *e = nullptr;
        for (const TypeLibEnum &candidate : PublishedTypeLibrary().enums)
            e = candidate.name == name ? &candidate : e;
        QVERIFY(e);
        QCOMPARE(e->guid, QUuid::fromString(guid));
        const QStringList expected = names.split(QLatin1Char(' '));
        QCOMPARE(e->values.size(), expected.size());
        const QMetaObject *owner = name == QLatin1String("Formdeckbtn") ? &UserControl1::staticMetaObject
            : name == QLatin1String("Gridpanelbtn")                     ? &GridPanel::staticMetaObject
                                                                        : &TrnControl::staticMetaObject;
        const QMetaEnum declared = owner->enumerator(owner->indexOfEnumerator(qPrintable(name)));
        QCOMPARE(declared.keyCount(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(e->values.at(i).first, expected.at(i));
            QCOMPARE(e->values.at(i).second, i);
            QCOMPARE(declared.keyToValue(qPrintable(expected.at(i))), i);
        }
    }

    void records_data()
    {
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("guid");
        QTest::newRow("RecStruct") << "DataType:BSTR Length:short Decimal:short Null:VARIANT_BOOL" << "AF91C582-ACED-470D-A051-F59179F9EA1D";
        QTest::newRow("GridStruct") << "ColEnable:VARIANT_BOOL HelpInvoked:VARIANT_BOOL ColMandatory:VARIANT_BOOL" << "4A65D7AA-35FB-4DD5-BB58-9EDE1A43D8CE";
    }

    void records()
    {
        QFETCH(QString, fields);
        QFETCH(QString, guid);
        const TypeLibRecord *r = nullptr;
        for (const TypeLibRecord &candidate : PublishedTypeLibrary().records)
            r = candidate.name == QLatin1String(QTest::currentDataTag()) ? &candidate : r;
        QVERIFY(r);
        QCOMPARE(r->guid, QUuid::fromString(guid));
        QStringList listed;
        for (const TypeLibParam &f : r->fields)
            listed << f.name + QLatin1Char(':') + f.type;
        QCOMPARE(listed.join(QLatin1Char(' ')), fields);
    }

    // Every number of the table reaches a real member of the right kind on a live control.
    void everyMemberBindsOnALiveControl_data() { numberingScheme_data(); }

    void everyMemberBindsOnALiveControl()
    {
        QFETCH(QString, control);
        const TypeLibClass &c = cls(control);
        const std::unique_ptr<QWidget> live = create(control);
        QCOMPARE(publishedClass(live->metaObject()), &c);
        for (const TypeLibInterface *i : {&c.defaultInterface, &c.eventInterface}) {
            for (const TypeLibMember &m : i->members)
                QVERIFY2(isComplete(bindMember(live->metaObject(), m), m), qPrintable(i->name + QLatin1Char('.') + m.name));
        }
    }

    // And the other way: whatever a control declares for hosts (below QWidget) has a number.
    void everyPublishedMemberHasANumber_data() { numberingScheme_data(); }

    void everyPublishedMemberHasANumber()
    {
        QFETCH(QString, control);
        const TypeLibClass &c = cls(control);
        const std::unique_ptr<QWidget> live = create(control);
        const QMetaObject *mo = live->metaObject();
        auto published = [&](QString name, bool isSignal) {
            if (unpublished.contains(name))
                return true;
            if (isSignal)
                return c.eventInterface.member(name) != nullptr;
            if (c.defaultInterface.member(name))
                return true;
            return name.startsWith(QLatin1String("set")) && c.defaultInterface.member(name.mid(3));
        };
        for (int i = QWidget::staticMetaObject.methodCount(); i < mo->methodCount(); ++i) {
            const QMetaMethod m = mo->method(i);
            if (m.access() == QMetaMethod::Public)
                QVERIFY2(published(QString::fromLatin1(m.name()), m.methodType() == QMetaMethod::Signal), m.methodSignature().constData());
        }
        for (int i = QWidget::staticMetaObject.propertyCount(); i < mo->propertyCount(); ++i)
            QVERIFY2(published(QString::fromLatin1(mo->property(i).name()), false), mo->property(i).name());
    }

    void declaredEventsThatAreNeverRaised_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("event");
        QTest::addColumn<int>("dispId");
        QTest::addColumn<int>("parameters");
        QTest::newRow("ColGotFocus") << "gridcontrol" << "ColGotFocus" << 6 << 4;
        QTest::newRow("ColValidate") << "gridcontrol" << "ColValidate" << 8 << 4;
        QTest::newRow("Validatevalue") << "DTControl" << "Validatevalue" << 1 << 1;
    }

    void declaredEventsThatAreNeverRaised()
    {
        QFETCH(QString, control);
        QFETCH(QString, event);
        QFETCH(int, dispId);
        QFETCH(int, parameters);
        const TypeLibMember *m = cls(control).eventInterface.member(event);
        QVERIFY(m);
        QCOMPARE(m->dispId, dispId);
        QCOMPARE(m->params.size(), parameters);
        for (const TypeLibParam &p : m->params)
            QVERIFY(p.byRef);
    }

    void gridToolbarDiffersInOneProperty()
    {
        QVERIFY(!cls(QStringLiteral("GridPanel")).defaultInterface.member(QStringLiteral("ReportToPrint")));
        for (const TypeLibClass &c : PublishedTypeLibrary().classes) {
            const bool isGridPanel = c.name == QLatin1String("GridPanel");
            QCOMPARE(c.defaultInterface.member(QStringLiteral("UserGridName")) != nullptr, isGridPanel);
        }
        QVERIFY(cls(QStringLiteral("TrnControl")).defaultInterface.member(QStringLiteral("ReportToPrint")));
        QVERIFY(cls(QStringLiteral("UserControl1")).defaultInterface.member(QStringLiteral("ReportToPrint")));
    }

    void printSetupRaisesNoEvents()
    {
        QVERIFY(cls(QStringLiteral("PrintSetup")).eventInterface.members.isEmpty());
    }
};

QTEST_MAIN(tst_TypeLibrary)
#include "tst_typelibrary.moc"
