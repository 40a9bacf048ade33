#include <PanelKestrin/propertybag.h>

#include <QtTest>

using namespace PanelKestrin;

class tst_propertybag : public QObject
{
    Q_OBJECT

private slots:
    void onlyChangedValuesAreStored_data();
    void onlyChangedValuesAreStored();
    void writingTheDefaultForgetsAnEarlierValue();
};

void tst_propertybag::onlyChangedValuesAreStored_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("defaultValue");
    QTest::addColumn<bool>("stored");
    QTest::newRow("enabling string at its default") << QVariant(QStringLiteral("00000000000"))
                                                    << QVariant(QStringLiteral("00000000000")) << false;
    QTest::newRow("enabling string changed") << QVariant(QStringLiteral("11111111111"))
                                             << QVariant(QStringLiteral("00000000000")) << true;
    QTest::newRow("same number, other type") << QVariant(285.0) << QVariant(285) << false;
    QTest::newRow("False against no default") << QVariant(false) << QVariant() << true;
    QTest::newRow("Empty against no default") << QVariant() << QVariant() << false;
}

void tst_propertybag::onlyChangedValuesAreStored()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, defaultValue);
    QFETCH(bool, stored);
    PropertyBag bag;
    bag.WriteProperty(QStringLiteral("cmdenable"), value, defaultValue);
    QCOMPARE(bag.contains(QStringLiteral("cmdenable")), stored);
    QCOMPARE(bag.ReadProperty(QStringLiteral("cmdenable"), defaultValue), stored ? value : defaultValue);
    // What a reader gets for a value not stored is its own default, whatever the writer's was.
    if (!stored)
        QCOMPARE(bag.ReadProperty(QStringLiteral("cmdenable"), QStringLiteral("1")), QVariant(QStringLiteral("1")));
}

void tst_propertybag::writingTheDefaultForgetsAnEarlierValue()
{
    PropertyBag bag;
    bag.WriteProperty(QStringLiteral("Caption"), QStringLiteral("Orders"), QString());
    bag.WriteProperty(QStringLiteral("Caption"), QString(), QString());
    QVERIFY(!bag.contains(QStringLiteral("Caption")));
    QCOMPARE(bag.ReadProperty(QStringLiteral("Caption"), QStringLiteral("Default")).toString(),
             QStringLiteral("Default"));
}

QTEST_MAIN(tst_propertybag)
#include "tst_propertybag.moc"
