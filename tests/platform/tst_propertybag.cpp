#include <PanelKestrin/propertybag.h>

#include <QtTest>

using namespace PanelKestrin;

class tst_propertybag : public QObject
{
    Q_OBJECT

private slots:
    void onlyChangedValuesAreStored_data();
    void onlyChangedValuesAreStored();
};

void tst_propertybag::onlyChangedValuesAreStored_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<bool>("stored");
    const QVariant allOff(QStringLiteral("00000000000"));
    QTest::newRow("enabling string at its default") << allOff << allOff << false;
    QTest::newRow("enabling string changed") << QVariant(QStringLiteral("11111111111")) << allOff << true;
    QTest::newRow("same number, other type") << QVariant(285.0) << QVariant(285) << false;
    QTest::newRow("False against no default") << QVariant(false) << QVariant() << true;
    QTest::newRow("Empty against no default") << QVariant() << QVariant() << false;
}

void tst_propertybag::onlyChangedValuesAreStored()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, defaultValue);
    QFETCH(bool, stored);
    const QString name = QStringLiteral("cmdenable");
    PropertyBag bag;
    bag.WriteProperty(name, QStringLiteral("earlier"), defaultValue);
    bag.WriteProperty(name, value, defaultValue); // writing the default forgets the earlier value
    QCOMPARE(bag.contains(name), stored);
    QCOMPARE(bag.ReadProperty(name, defaultValue), stored ? value : defaultValue);
    // What a reader gets for a value not stored is its own default, whatever the writer's was.
    if (!stored)
        QCOMPARE(bag.ReadProperty(name, QStringLiteral("1")), QVariant(QStringLiteral("1")));
}

QTEST_MAIN(tst_propertybag)
#include "tst_propertybag.moc"
