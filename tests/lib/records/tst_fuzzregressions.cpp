#include <QDir>
#include <QFile>
#include <QTest>

#include "records/disk/diskinfo.h"
#include "records/plan/factory.h"
#include "repositoryrecordsfuzz.h"
#include "testmain.h"

// Replays every kept fuzz input, seeds and former crashes alike, with the
// same checks as the fuzz targets: no crash, and a record that was read
// survives a round trip unchanged.
class TestFuzzRegressions : public QObject
{
    Q_OBJECT

private slots:
    void shouldReadKeptPlanInputs_data();
    void shouldReadKeptPlanInputs();
    void shouldReadKeptDiskInputs_data();
    void shouldReadKeptDiskInputs();
    void shouldReadKeptRepositoryInputs_data();
    void shouldReadKeptRepositoryInputs();

private:
    static void addInputs(const QString& folder);
};

void TestFuzzRegressions::addInputs(const QString& folder)
{
    QTest::addColumn<QByteArray>("input");
    const QDir dir(QStringLiteral(NVB_FUZZ_CORPUS "/") + folder);
    const QStringList files = dir.entryList(QDir::Files, QDir::Name);
    QVERIFY2(!files.isEmpty(), qPrintable(dir.path()));
    for (const QString& name : files) {
        QFile file(dir.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::newRow(qPrintable(name)) << file.readAll();
    }
}

void TestFuzzRegressions::shouldReadKeptPlanInputs_data()
{
    addInputs(QStringLiteral("plan"));
}

void TestFuzzRegressions::shouldReadKeptPlanInputs()
{
    QFETCH(QByteArray, input);
    const auto plan = NVB::Info::Plan::Factory::create(QString::fromUtf8(input));
    if (!plan)
        return;
    const QString written = plan->toXml();
    const auto again = NVB::Info::Plan::Factory::create(written);
    QVERIFY(again);
    QCOMPARE(again->toXml(), written);
}

void TestFuzzRegressions::shouldReadKeptDiskInputs_data()
{
    addInputs(QStringLiteral("diskinfo"));
}

void TestFuzzRegressions::shouldReadKeptDiskInputs()
{
    QFETCH(QByteArray, input);
    const auto info = NVB::Info::DiskInfo::createFromXml(QString::fromUtf8(input));
    if (!info)
        return;
    const auto again = NVB::Info::DiskInfo::createFromXml(info->toXml());
    QVERIFY(again);
    QVERIFY(*again == *info);
}

void TestFuzzRegressions::shouldReadKeptRepositoryInputs_data()
{
    addInputs(QStringLiteral("repository"));
}

void TestFuzzRegressions::shouldReadKeptRepositoryInputs()
{
    QFETCH(QByteArray, input);
    RepositoryRecordsFuzz::feed(input); // aborts on a record that does not read back
}

NVB_TEST_GUILESS_MAIN(TestFuzzRegressions)
#include "tst_fuzzregressions.moc"
