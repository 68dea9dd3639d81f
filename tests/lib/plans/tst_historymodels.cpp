#include <QAbstractItemModelTester>
#include <QColor>
#include <QJsonArray>
#include <QSignalSpy>

#include "app/icons/iconmanager.h"
#include "planfixture.h"
#include "plans/history/historygetbyfilemodel.h"
#include "plans/history/historygetbyplanmodel.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;
namespace Column = NVB::GUI::Models::Table::HistoryGetByPlanModelInfo::Column;

namespace {

// A page of runs with ids counting down from `firstId`, as the engine pages.
QJsonArray runs(int firstId, int count, const QString& name = QStringLiteral("Docs"))
{
    QJsonArray page;
    for (int i = 0; i < count; ++i) {
        page.append(QJsonObject {{"DbID", firstId - i}, {"PlanName", name}, {"Result", 6}, {"Operation", 0},
            {"StartTimeUTC", "20261122235930"}, {"Duration", 45},
            {"CSVLine", QStringLiteral("\"%1\",\"%2\"").arg(name).arg(firstId - i)}});
    }
    return page;
}

} // namespace

class TestHistoryModels : public QObject
{
    Q_OBJECT

private:
    EngineTestPeer* m_peer = nullptr;

private slots:
    void initTestCase()
    {
        m_peer = new EngineTestPeer(this);
        QVERIFY(PlanTest::startChannel(m_peer));
    }

    void shouldPageUntilAnEmptyPageAndDropLateReplies()
    {
        HistoryGetByPlanModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        // Requests behind a row get the next page; the third one is empty.
        m_peer->onCommand(QStringLiteral("HistoryListByPlan"), [](const QJsonObject& request) {
            const QJsonObject params = request.value("params").toObject();
            const int last = params.value("lastID").toInt();
            const QString name = params.value("period").toString();
            if (last == 0)
                return EngineTestPeer::Answer::reply({{"HistoryListByPlan", runs(500, 3, name)}});
            if (last == 498)
                return EngineTestPeer::Answer::reply({{"HistoryListByPlan", runs(497, 2, name)}});
            return EngineTestPeer::Answer::reply({{"HistoryListByPlan", QJsonArray()}});
        });
        const QUuid plan = QUuid::createUuid();
        model.load(1, plan);
        model.load(7, plan); // replaces the first load before its reply came
        // Pages as a view does, until the empty one.
        QVERIFY(QTest::qWaitFor([&] {
            if (model.canFetchMore({}))
                model.fetchMore({});
            return model.rowCount() == 5;
        }));
        QTest::qWait(100);
        QVERIFY(!model.canFetchMore({}));
        QCOMPARE(model.rowCount(), 5);
        for (int row = 0; row < 5; ++row)
            QCOMPARE(model.index(row, Column::PlanName).data().toString(), QStringLiteral("All"));
        QCOMPARE(model.row(4).value("DbID").toInt(), 496);
        const QJsonObject params = m_peer->lastParams(QStringLiteral("HistoryListByPlan"));
        QCOMPARE(params.value("planID").toString(), plan.toString(QUuid::WithoutBraces));
        QCOMPARE(params.value("lastID").toInt(), 496);
        QCOMPARE(params.value("filter").toString(), QString());

        // A new first page clears the table before its rows come.
        QSignalSpy done(&model, &BaseModel::complite);
        model.load(2, plan);
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(done.wait());
        QCOMPARE(model.index(0, Column::PlanName).data().toString(), QStringLiteral("WeekLast"));
    }

    void shouldLeaveEmptyHistoryEmpty()
    {
        HistoryGetByFileModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_peer->onCommand(QStringLiteral("HistoryListByFiles"),
            EngineTestPeer::Answer::reply({{"HistoryListByFiles", QJsonArray()}}));
        QSignalSpy done(&model, &BaseModel::complite);
        model.load(0, QUuid::createUuid(), 0);
        QVERIFY(done.wait());
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!model.canFetchMore({}));
    }

    // Retention's removals come as file rows of operation 5; they must not
    // look like copies.
    void shouldShowRemovalsApartFromCopies()
    {
        HistoryGetByFileModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_peer->onCommand(QStringLiteral("HistoryListByFiles"),
            EngineTestPeer::Answer::reply({{"HistoryListByFiles",
                QJsonArray {QJsonObject {
                                {"ID", 2}, {"Operation", 5}, {"File", "Removed by the retention policy: generation 1"}},
                    QJsonObject {{"ID", 1}, {"Operation", 1}, {"File", "/docs/a.txt"}}}}}));
        QSignalSpy done(&model, &BaseModel::complite);
        model.load(0, QUuid::createUuid(), 0);
        QVERIFY(done.wait());
        QCOMPARE(model.rowCount(), 2);
        const auto image = [](const QVariant& icon) { return icon.value<QIcon>().pixmap(16).toImage(); };
        const QImage removed = image(model.index(0, 0).data(Qt::DecorationRole));
        QVERIFY(!removed.isNull());
        QCOMPARE(removed, image(IconManager::resource(QStringLiteral("restore-point-empty.svg"))));
        QCOMPARE(image(model.index(1, 0).data(Qt::DecorationRole)),
            image(IconManager::icon(IconManager::BackupPlanSuccess)));
        QVERIFY(removed != image(model.index(1, 0).data(Qt::DecorationRole)));
        QCOMPARE(model.index(0, 0).data(Qt::ToolTipRole).toString(), QStringLiteral("Removed"));
        QCOMPARE(model.index(1, 0).data(Qt::ToolTipRole).toString(), QStringLiteral("Copied"));
        QCOMPARE(model.index(0, 0).data(Qt::ForegroundRole), QVariant(QColor(Qt::blue)));
        QCOMPARE(model.index(1, 0).data(Qt::ForegroundRole), QVariant(QColor(Qt::darkGreen)));
    }

    void shouldShowResultsAndFinishTimes_data()
    {
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("start");
        QTest::addColumn<int>("duration");
        QTest::addColumn<QVariant>("finish");
        QTest::addColumn<QVariant>("colour");
        QTest::newRow("across midnight") << 6 << "20261231235930" << 45 << QVariant("20270101000015")
                                         << QVariant(QColor(Qt::darkGreen));
        QTest::newRow("running has none")
            << 2 << "20261122100000" << 10 << QVariant() << QVariant(QColor(Qt::darkGreen));
        QTest::newRow("failed") << 8 << "20261122100000" << 3600 << QVariant("20261122110000")
                                << QVariant(QColor(Qt::red));
        QTest::newRow("warning") << 7 << "20261122100000" << 0 << QVariant("20261122100000")
                                 << QVariant(QColor(Qt::darkYellow));
        QTest::newRow("no colour") << 0 << "bad stamp" << 5 << QVariant() << QVariant();
    }

    void shouldShowResultsAndFinishTimes()
    {
        QFETCH(int, result);
        QFETCH(QString, start);
        QFETCH(int, duration);
        QFETCH(QVariant, finish);
        QFETCH(QVariant, colour);
        HistoryGetByPlanModel model;
        m_peer->onCommand(QStringLiteral("HistoryListByPlan"),
            EngineTestPeer::Answer::reply({{"HistoryListByPlan",
                QJsonArray {
                    QJsonObject {{"DbID", 1}, {"Result", result}, {"StartTimeUTC", start}, {"Duration", duration}}}}}));
        QSignalSpy done(&model, &BaseModel::complite);
        model.load(3, QUuid::createUuid());
        QVERIFY(done.wait());
        QCOMPARE(model.index(0, Column::FinishTime).data().toString(), finish.toString());
        QCOMPARE(model.index(0, Column::Result).data(Qt::ForegroundRole), colour);
        QCOMPARE(model.index(0, 3).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignHCenter | Qt::AlignVCenter));
        QCOMPARE(model.index(0, 1).data(Qt::TextAlignmentRole).toInt(), -1);
        QCOMPARE(model.index(5, 1).data(), QVariant());
    }

    void shouldExportOverSeveralPages()
    {
        HistoryGetByFileModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        // 200, 200, then 0 rows: a full page always asks once more.
        m_peer->onCommand(QStringLiteral("HistoryListByFiles"), [](const QJsonObject& request) {
            const QJsonObject params = request.value("params").toObject();
            const int last = params.value("lastId").toInt();
            QJsonArray page;
            if (last == 0 || last == 1001) {
                const int first = last == 0 ? 1200 : 1000;
                for (int i = 0; i < 200; ++i)
                    page.append(QJsonObject {{"ID", first - i}, {"CSVLine", QStringLiteral("\"f%1\"").arg(first - i)}});
            }
            return EngineTestPeer::Answer::reply({{"HistoryListByFiles", page}});
        });
        QSignalSpy ready(&model, &HistoryGetByFileModel::saveFileReady);
        const int before = m_peer->requestCount(QStringLiteral("HistoryListByFiles"));
        model.issueFileExport(9, QUuid::createUuid(), 3, 0);
        QVERIFY(ready.wait());
        QCOMPARE(m_peer->requestCount(QStringLiteral("HistoryListByFiles")) - before, 3);
        const QJsonObject params = m_peer->lastParams(QStringLiteral("HistoryListByFiles"));
        QCOMPARE(params.value("generateCSV").toBool(), true);
        QCOMPARE(params.value("filterOperationType").toInt(), 3);
        QCOMPARE(params.value("period").toString(), QStringLiteral("All"));
        auto file = ready.first().first().value<QSharedPointer<QTemporaryFile>>();
        QVERIFY(file);
        QVERIFY(file->open());
        const QList<QByteArray> lines = file->readAll().split('\n');
        QCOMPARE(lines.size(), 1 + 400 + 1); // header, rows, nothing after the last CRLF
        QCOMPARE(lines.at(1).trimmed(), QByteArray("\"f1200\""));
        QCOMPARE(lines.at(400).trimmed(), QByteArray("\"f801\""));
        QVERIFY(model.exportLines().isEmpty());
        QCOMPARE(model.rowCount(), 0); // an export leaves the table alone
    }
};

NVB_TEST_MAIN(TestHistoryModels)
#include "tst_historymodels.moc"
