#include <QDir>
#include <QFile>
#include <QTest>

#include "archiverecordsfuzz.h"
#include "enginerequestfuzz.h"
#include "framecodecfuzz.h"
#include "testmain.h"

// Replays every kept input of the codec, engine request and archive record
// fuzz targets, seeds and former findings alike, through the targets' own
// input handlers: a finding that comes back aborts this test.
class TestEngineFuzzRegressions : public QObject
{
    Q_OBJECT

private:
    EngineRequestFuzz* m_requests = nullptr;

    static void addInputs(const QString& folder)
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

private slots:
    void initTestCase() { m_requests = new EngineRequestFuzz; }
    void cleanupTestCase() { delete m_requests; }

    void shouldDecodeKeptStreams_data() { addInputs(QStringLiteral("framecodec")); }
    void shouldDecodeKeptStreams()
    {
        QFETCH(QByteArray, input);
        FrameCodecFuzz::feed(input);
    }

    void shouldAnswerKeptRequests_data() { addInputs(QStringLiteral("enginerequest")); }
    void shouldAnswerKeptRequests()
    {
        QFETCH(QByteArray, input);
        m_requests->feed(input);
    }

    void shouldReadKeptTrees_data() { addInputs(QStringLiteral("pointtree")); }
    void shouldReadKeptTrees()
    {
        QFETCH(QByteArray, input);
        ArchiveRecordsFuzz::feedTree(input);
    }

    void shouldReadKeptIndexObjects_data() { addInputs(QStringLiteral("repositoryindex")); }
    void shouldReadKeptIndexObjects()
    {
        QFETCH(QByteArray, input);
        ArchiveRecordsFuzz::feedIndex(input);
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineFuzzRegressions)
#include "tst_enginefuzzregressions.moc"
