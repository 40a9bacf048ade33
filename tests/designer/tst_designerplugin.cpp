// The Designer plugin as Designer and QUiLoader use it: loaded as a plugin, six controls in one
// group, and a form saved with its controls' properties reading back the same values, a
// toolbar's cmdenable stored but not applied.

#include <PanelKestrin/dispatch.h>
#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/toolbarbase.h>
#include <PanelKestrin/typelibrary.h>

#include <QAbstractButton>
#include <QBuffer>
#include <QPluginLoader>
#include <QUiLoader>
#include <QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

using namespace PanelKestrin;

using Properties = QMap<QString, QVariant>;
Q_DECLARE_METATYPE(Properties)

namespace {

// A property's value as a form file writes it.
QString element(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool: return QStringLiteral("<bool>%1</bool>").arg(value.toBool() ? "true" : "false");
    case QMetaType::Short:
    case QMetaType::Int: return QStringLiteral("<number>%1</number>").arg(value.toInt());
    case QMetaType::QColor: {
        const QColor c = value.value<QColor>();
        return QStringLiteral("<color><red>%1</red><green>%2</green><blue>%3</blue></color>").arg(c.red()).arg(c.green()).arg(c.blue());
    }
    default: return QStringLiteral("<string>%1</string>").arg(value.toString().toHtmlEscaped());
    }
}

// A form holding one control with the properties given, as Designer saves it.
QByteArray formFile(const QString &className, const QString &header, const QString &name, const Properties &properties)
{
    QString widget;
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        widget += QStringLiteral("   <property name=\"%1\">%2</property>\n").arg(it.key(), element(it.value()));
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<ui version=\"4.0\">\n <class>Form1</class>\n"
                          " <widget class=\"QWidget\" name=\"Form1\">\n"
                          "  <widget class=\"%1\" name=\"%2\">\n%3  </widget>\n </widget>\n"
                          " <customwidgets>\n  <customwidget>\n   <class>%1</class>\n   <extends>QWidget</extends>\n"
                          "   <header>%4</header>\n  </customwidget>\n </customwidgets>\n</ui>\n")
        .arg(className, name, widget, header)
        .toUtf8();
}

} // namespace

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT

    QPluginLoader loader{QStringLiteral(PK_DESIGNER_PLUGIN)};
    QDesignerCustomWidgetCollectionInterface *collection = nullptr;

    QDesignerCustomWidgetInterface *widget(const QString &name) const
    {
        for (QDesignerCustomWidgetInterface *w : collection->customWidgets()) {
            if (w->name() == name)
                return w;
        }
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(loader.load(), qPrintable(loader.errorString()));
        collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
        QVERIFY(collection);
    }

    void listsTheSixControls()
    {
        QStringList names;
        for (QDesignerCustomWidgetInterface *w : collection->customWidgets()) {
            names << w->name();
            QCOMPARE(w->group(), QStringLiteral("PanelKestrin"));
            QVERIFY(!w->toolTip().isEmpty());
            QVERIFY2(!w->icon().pixmap(16, 16).isNull(), qPrintable(w->name()));
            QVERIFY(!w->isContainer());
            // The header a compiled form includes exists as a published header.
            QVERIFY2(QFileInfo::exists(QStringLiteral(PK_INCLUDE_ROOT "/") + w->includeFile()), qPrintable(w->includeFile()));
            QVERIFY(w->domXml().contains(QStringLiteral("class=\"%1\"").arg(w->name())));
        }
        QStringList published;
        for (const TypeLibClass &c : PublishedTypeLibrary().classes)
            published << QStringLiteral("PanelKestrin::") + c.name;
        QCOMPARE(names, published);
    }

    void createsTheControl_data()
    {
        QTest::addColumn<QString>("name");
        for (const TypeLibClass &c : PublishedTypeLibrary().classes)
            QTest::newRow(qPrintable(c.name)) << c.name;
    }

    void createsTheControl()
    {
        QFETCH(QString, name);
        QWidget parent;
        QWidget *control = widget(QStringLiteral("PanelKestrin::") + name)->createWidget(&parent);
        QVERIFY(control);
        QCOMPARE(control->parent(), &parent);
        QCOMPARE(Dispatch::ClassOf(control)->name, name);
    }

    // Each control with its design-time properties set in a form file, loaded as a host loads it.
    void formRoundTrip_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Properties>("properties");
        QTest::newRow("TrnControl") << "TrnControl" << Properties{{"cmdenable", QStringLiteral("01010101")}};
        QTest::newRow("UserControl1") << "UserControl1" << Properties{{"cmdenable", QStringLiteral("000000000000")}};
        QTest::newRow("GridPanel") << "GridPanel" << Properties{{"cmdenable", QStringLiteral("0")}};
        QTest::newRow("gridcontrol") << "gridcontrol"
                                     << Properties{{"gColToFix", qint16(2)}, {"NoAddRow", true}, {"bShowMenu", true}};
        QTest::newRow("DTControl") << "DTControl"
                                   << Properties{{"BackColor", QColor(255, 255, 204)}, {"ForeColor", QColor(Qt::darkBlue)},
                                                 {"BorderStyle", qint16(0)}, {"DataMember", QStringLiteral("orders")},
                                                 {"DataFieldName", QStringLiteral("due")}};
        QTest::newRow("PrintSetup") << "PrintSetup" << Properties{{"toolTip", QStringLiteral("Output of the order list")}};
    }

    void formRoundTrip()
    {
        QFETCH(QString, name);
        QFETCH(Properties, properties);
        QDesignerCustomWidgetInterface *plugin = widget(QStringLiteral("PanelKestrin::") + name);
        // Every property the form sets is one Designer's property editor offers.
        std::unique_ptr<QWidget> sample(plugin->createWidget(nullptr));
        for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
            const int index = sample->metaObject()->indexOfProperty(qPrintable(it.key()));
            QVERIFY2(index >= 0 && sample->metaObject()->property(index).isDesignable(), qPrintable(it.key()));
        }

        QBuffer file;
        file.setData(formFile(plugin->name(), plugin->includeFile(), name + QLatin1Char('1'), properties));
        file.open(QIODevice::ReadOnly);
        QUiLoader uiLoader;
        uiLoader.clearPluginPaths();
        uiLoader.addPluginPath(QFileInfo(QStringLiteral(PK_DESIGNER_PLUGIN)).absolutePath());
        std::unique_ptr<QWidget> loaded(uiLoader.load(&file));
        QVERIFY2(loaded, qPrintable(uiLoader.errorString()));
        QWidget *copy = loaded->findChild<QWidget *>(name + QLatin1Char('1'));
        QVERIFY(copy);
        QCOMPARE(Dispatch::ClassOf(copy)->name, name);
        for (auto it = properties.cbegin(); it != properties.cend(); ++it)
            QCOMPARE(copy->property(qPrintable(it.key())), it.value());

        // A toolbar's cmdenable is the stored design-time string; its buttons stay as designed.
        // Its report properties, shared by every toolbar, are run-time only: no form carries them.
        if (auto *toolbar = qobject_cast<ToolbarBase *>(copy)) {
            for (QAbstractButton *b : toolbar->findChildren<QAbstractButton *>())
                QVERIFY2(b->isEnabled(), qPrintable(b->objectName()));
            for (const char *shared : {"srset", "sortcaptions", "sortfields", "selquery", "rptheading", "rpttitle",
                                       "SelectionCriteria", "SelectionField", "RptParameter"}) {
                const QMetaProperty p = toolbar->metaObject()->property(toolbar->metaObject()->indexOfProperty(shared));
                QVERIFY2(p.isValid() && !p.isDesignable(), shared);
            }
        }
    }
};

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
