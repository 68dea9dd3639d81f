#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>
#include <QTest>

#include "settings/retentionpolicy.h"
#include "settings/settingsimpledialog.h"
#include "stores/defaultsettings.h"
#include "testmain.h"

using NVB::GUI::Settings::RetentionPolicy;

class TestRetentionPolicySettings : public QObject
{
    Q_OBJECT
private slots:
    void shouldReadDurationTexts_data();
    void shouldReadDurationTexts();
    void shouldShowStoredAgeInLargestUnit_data();
    void shouldShowStoredAgeInLargestUnit();
    void shouldKeepLastVersionWithBackupDate();
    void shouldTakeTitleInSimpleDialog();
};

void TestRetentionPolicySettings::shouldReadDurationTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("days");
    QTest::newRow("sixty") << "60.00:00:00" << 60;
    QTest::newRow("off") << "-1" << -1;
    QTest::newRow("no dot") << "60" << -1;
    QTest::newRow("garbage") << "x.00:00:00" << -1;
}

void TestRetentionPolicySettings::shouldReadDurationTexts()
{
    QFETCH(QString, text);
    QFETCH(int, days);
    QCOMPARE(RetentionPolicy::durationDays(text), days);
    if (days >= 0)
        QCOMPARE(RetentionPolicy::durationText(days), text);
}

void TestRetentionPolicySettings::shouldShowStoredAgeInLargestUnit_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("unit");
    QTest::newRow("31 days") << "31.00:00:00" << 31 << 0;
    QTest::newRow("30 days") << "30.00:00:00" << 1 << 2;
    QTest::newRow("60 days") << "60.00:00:00" << 2 << 2;
    QTest::newRow("14 days") << "14.00:00:00" << 2 << 1;
}

void TestRetentionPolicySettings::shouldShowStoredAgeInLargestUnit()
{
    QFETCH(QString, stored);
    QFETCH(int, value);
    QFETCH(int, unit);
    NVB::DefaultSettings* store = NVB::DefaultSettings::instance();
    QVERIFY(store->setSerializationSupportRetentionTime(stored));
    RetentionPolicy page;
    QVERIFY(page.deleteOlderBox()->isChecked());
    QCOMPARE(page.ageBox()->value(), value);
    QCOMPARE(page.ageTypeBox()->currentIndex(), unit);
    // Loading writes nothing back.
    QCOMPARE(store->getSerializationSupportRetentionTime(), stored);
    // A change of the user's writes the same days, then the new ones.
    page.ageBox()->setValue(value + 1);
    const int factor = unit == 2 ? 30 : unit == 1 ? 7 : 1;
    QCOMPARE(store->getSerializationSupportRetentionTime(), RetentionPolicy::durationText((value + 1) * factor));
    page.deleteOlderBox()->setChecked(false);
    QCOMPARE(store->getSerializationSupportRetentionTime(), QStringLiteral("-1"));
}

void TestRetentionPolicySettings::shouldKeepLastVersionWithBackupDate()
{
    NVB::DefaultSettings* store = NVB::DefaultSettings::instance();
    QVERIFY(store->setSerializationSupportRetentionTime(QStringLiteral("7.00:00:00")));
    QVERIFY(store->setRetentionDeleteLastVersion(QStringLiteral("true")));
    QVERIFY(store->setRetentionNumberOfVersions(QStringLiteral("-1")));
    RetentionPolicy page;
    QVERIFY(!page.keepLastBox()->isChecked());
    QVERIFY(!page.versionsBox()->isEnabled());
    page.dateTypeBox()->setCurrentIndex(1);
    QVERIFY(!page.keepLastBox()->isEnabled());
    QCOMPARE(store->getRetentionDeleteLastVersion(), QStringLiteral("false"));
    QCOMPARE(store->getRetentionUseBackupDate(), QStringLiteral("true"));
    page.keepVersionBox()->setChecked(true);
    page.versionsBox()->setValue(4);
    QCOMPARE(store->getRetentionNumberOfVersions(), QStringLiteral("4"));
}

void TestRetentionPolicySettings::shouldTakeTitleInSimpleDialog()
{
    NVB::GUI::SettingSimpleDialog dialog;
    dialog.setWidget(nullptr);
    QVERIFY(dialog.windowTitle().isEmpty());
    dialog.setWidget(new RetentionPolicy());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Backup"));
}

NVB_TEST_MAIN(TestRetentionPolicySettings)
#include "tst_retentionpolicysettings.moc"
