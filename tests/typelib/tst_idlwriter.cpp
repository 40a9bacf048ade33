// The type description says what hosts bind to: dispatch-only interfaces, numbers, accessors,
// by-reference parameters and the typed object members, exactly as the identity table has them.

#include <PanelKestrin/idlwriter.h>

#include <QtTest>

using namespace PanelKestrin;

class tst_IdlWriter : public QObject
{
    Q_OBJECT

    QStringList lines;

private slots:
    void initTestCase()
    {
        for (const QString &line : TypeLibraryIdl().split(QLatin1Char('\n')))
            lines << line.trimmed();
    }

    void declares_data()
    {
        QTest::addColumn<QString>("line");
        const auto row = [](const char *tag, const char *line) { QTest::newRow(tag) << QString::fromUtf8(line); };
        row("library", "[uuid(294E0F8D-B61D-4E1D-AAAC-F559A7F383F8), version(7.0), lcid(0x409), helpstring(\"PanelKestrin\")]");
        row("default interface", "dispinterface _TrnControl");
        row("event interface", "dispinterface __TrnControl");
        row("class", "coclass TrnControl");
        row("default of the class", "[default] dispinterface _TrnControl;");
        row("events of the class", "[default, source] dispinterface __TrnControl;");
        row("property get", "[id(0x6803000a), propget] BSTR cmdenable();");
        row("property put", "[id(0x6803000a), propput] void cmdenable([in] BSTR cmdenable);");
        row("recordset by reference", "[id(0x68030009), propputref] void srset([in] _Recordset* srset);");
        row("write-only by reference", "[id(0x68030000), propput] void ReportToPrint([in, out] BSTR* ReportToPrint);");
        row("public procedure", "[id(0x6003000d)] void Command1_Click([in, out] short* Index);");
        row("by-reference indexes", "[id(0x6003001b)] VARIANT_BOOL vSetGridRowColValue([in, out] short* iRow, [in, out] short* iCol, [in] VARIANT vColumnValue);");
        row("recordset argument", "[id(0x6003002b)] void MakeStruct([in, out] _Recordset** RstTemp, [in, optional] VARIANT FieldList);");
        row("variable", "[id(0x40030006), propget] VARIANT_BOOL gAllowMoveFirst();");
        row("variable set by reference", "[id(0x4003001e), propputref] void gValue([in] VARIANT gValue);");
        row("list of arguments", "[id(0x60030010), vararg] void FixColSizes([in, out] SAFEARRAY(VARIANT)* ColSizeList);");
        row("event with Cancel", "[id(0x00000003)] void DeleteAllowed([in, out] VARIANT_BOOL* Cancel);");
        row("unraised event", "[id(0x00000008)] void ColValidate([in, out] long* Row, [in, out] short* Col, [in, out] VARIANT* value, [in, out] VARIANT_BOOL* Cancel);");
        row("help string with its closing blank",
            "[id(0x68030002), propget, helpstring(\"Sets a value that specifies the Data control through which the current control is bound to a database. \")] DataSource* DataSource();");
        row("enumeration", "typedef [uuid(FEB68DDE-01B1-41B0-A1FA-EF8D21B3B715)] enum TrnControlBtn");
        row("record", "typedef [uuid(AF91C582-ACED-470D-A051-F59179F9EA1D)] struct RecStruct");
        row("record field", "VARIANT_BOOL Null;");
    }

    void declares()
    {
        QFETCH(QString, line);
        QVERIFY2(lines.contains(line), qPrintable(line));
    }

    // A dispatch-only interface lists no vtable methods, and the print options panel's event
    // interface is empty.
    void interfacesAreDispatchOnly()
    {
        QVERIFY(!lines.join(QLatin1Char('\n')).contains(QLatin1String("HRESULT")));
        const int events = int(lines.indexOf(QStringLiteral("dispinterface __PrintSetup")));
        QVERIFY(events > 0);
        QCOMPARE(lines.mid(events + 1, 4),
                 QStringList({"{", "properties:", "methods:", "};"}));
    }
};

QTEST_MAIN(tst_IdlWriter)
#include "tst_idlwriter.moc"
