#include <limits>

#include <QStandardItemModel>
#include <QTableView>
#include <QTreeView>
#include <QtTest>

#include "app/delegates/counterdelegate.h"
#include "app/delegates/datetimedelegate.h"
#include "app/delegates/doubedelegate.h"
#include "app/delegates/doubletopercentdelegate.h"
#include "app/delegates/duratondelegate.h"
#include "app/delegates/incompletestatedelegate.h"
#include "app/delegates/planitemsdelegate.h"
#include "app/delegates/planresultdelegate.h"
#include "app/delegates/sizedelegate.h"
#include "app/delegates/truefalsedelegate.h"
#include "app/delegates/xmlstringdelegate.h"
#include "records/plan/planresult.h"
#include "testmain.h"

using namespace NVB::GUI;

namespace {
const QString NA = QStringLiteral("N/A");
}

class TestValueDelegates : public QObject
{
    Q_OBJECT

private slots:
    void shouldFormatNumbers_data()
    {
        QTest::addColumn<QString>("delegate");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("counter") << "counter" << QVariant(1234567) << "1234567";
        QTest::newRow("counter negative") << "counter" << QVariant(-1) << NA;
        QTest::newRow("counter text") << "counter" << QVariant(QStringLiteral("many")) << NA;
        QTest::newRow("double") << "double" << QVariant(2.0 / 3.0) << "0.67";
        QTest::newRow("double negative") << "double" << QVariant(-0.5) << NA;
        QTest::newRow("percent half") << "percent" << QVariant(0.5) << "50%";
        QTest::newRow("percent one") << "percent" << QVariant(1.0) << "100%";
        QTest::newRow("percent above one") << "percent" << QVariant(1.01) << NA;
        QTest::newRow("percent below zero") << "percent" << QVariant(-0.01) << NA;
        QTest::newRow("percent text") << "percent" << QVariant(QStringLiteral("half")) << NA;
        QTest::newRow("duration null") << "duration" << QVariant() << NA;
        QTest::newRow("duration") << "duration" << QVariant(3725) << "01:02:05";
        QTest::newRow("xml") << "xml" << QVariant(QStringLiteral("<?xml version=\"1.0\"?><a/>"))
                             << "Click to view details";
        QTest::newRow("xml upper case") << "xml" << QVariant(QStringLiteral("<?XML version=\"1.0\"?>"))
                                        << "<?XML version=\"1.0\"?>";
        QTest::newRow("plain text") << "xml" << QVariant(QStringLiteral("Disk full")) << "Disk full";
    }

    void shouldFormatNumbers()
    {
        QFETCH(QString, delegate);
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        const QMap<QString, QString (*)(const QVariant&, const QLocale&)> toText = {
            {QStringLiteral("counter"), &CounterDelegate::toText},
            {QStringLiteral("double"), &DoubeDelegate::toText},
            {QStringLiteral("percent"), &DoubleToPercentDelegate::toText},
            {QStringLiteral("duration"), &DuratonDelegate::toText},
            {QStringLiteral("xml"), &XmlStringDelegate::toText},
        };
        QCOMPARE(toText.value(delegate)(value, QLocale()), text);
    }

    void shouldShowSizesWithinLimits_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("otherText");
        const QString other = QStringLiteral("unknown");
        QTest::newRow("zero") << QVariant(0) << "0 bytes"
                              << "0 bytes";
        QTest::newRow("negative") << QVariant(-5.0) << NA << "-5 bytes";
        QTest::newRow("qint64 max") << QVariant(std::numeric_limits<qint64>::max()) << NA << other;
        QTest::newRow("qint64 max less one") << QVariant(std::numeric_limits<qint64>::max() - 1) << "8.00 EB"
                                             << "8.00 EB";
        QTest::newRow("quint64 max") << QVariant(std::numeric_limits<quint64>::max()) << NA << other;
        QTest::newRow("qint64 max as double") << QVariant(double(std::numeric_limits<qint64>::max())) << NA << other;
        QTest::newRow("text") << QVariant(QStringLiteral("big")) << NA << other;
    }

    void shouldShowSizesWithinLimits()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        QFETCH(QString, otherText);
        QCOMPARE(SizeDelegate::toText(value, QLocale()), text);
        QCOMPARE(SizeDelegate::toText(value, QStringLiteral("unknown")), otherText);
    }

    void shouldNamePlanResults()
    {
        using NVB::Info::Plan::PlanResult;
        QCOMPARE(PlanResultDelegate::toText(QVariant(), QLocale()), NA);
        QCOMPARE(PlanResultDelegate::toText(-1, QLocale()), NA);
        QCOMPARE(PlanResultDelegate::toText(8, QLocale()), PlanResult(8).displayName());
        QVERIFY(PlanResultDelegate::toText(6, QLocale()) != NA);
        QVERIFY(PlanResultDelegate::toText(6, QLocale()) != PlanResultDelegate::toText(8, QLocale()));
    }

    void shouldShowEngineStampsInLocalTime()
    {
        qputenv("TZ", "Asia/Tokyo");
        const QDateTime utc(QDate(2026, 3, 1), QTime(23, 30, 0), Qt::UTC);
        const QString expected = QLocale::system().toString(utc.toLocalTime(), QLocale::ShortFormat);
        QCOMPARE(DateTimeDelegate::toText(QStringLiteral("20260301233000"), QLocale()), expected);
        // Tokyo is ahead of UTC: the day must have moved on.
        QCOMPARE(utc.toLocalTime().date(), QDate(2026, 3, 2));
        QCOMPARE(DateTimeDelegate::toText(QStringLiteral("2026-03-01"), QLocale()), NA);
        QCOMPARE(DateTimeDelegate::toText(QVariant(), QLocale()), NA);
        qunsetenv("TZ");
    }

    void shouldListPlanItemsWithoutVirtualRoots()
    {
        const QString html = PlanItemsDelegate::toText(QStringList {QStringLiteral("/NVB_VOLUMES/home/ann"),
            QStringLiteral("/NVB_SHARES/server/docs"), QStringLiteral("/srv/a<b")});
        QCOMPARE(html,
            QStringLiteral("<table><tr><td>home/ann</tb</tr><tr><td>server/docs</tb</tr>"
                           "<tr><td>/srv/a&lt;b</tb</tr></table>"));
        QCOMPARE(PlanItemsDelegate::toText(QStringList()), QStringLiteral("<table></table>"));
    }

    void shouldPutDelegateTextIntoStyleOption()
    {
        QStandardItemModel model(2, 1);
        model.setData(model.index(0, 0), 1);
        model.setData(model.index(1, 0), 7);
        QTableView view;
        view.setModel(&model);
        TrueFalseDelegate delegate;
        view.setItemDelegateForColumn(0, &delegate);

        QStyleOptionViewItem option;
        option.initFrom(&view);
        class Probe : public TrueFalseDelegate
        {
        public:
            QString textOf(QStyleOptionViewItem option, const QModelIndex& index) const
            {
                initStyleOption(&option, index);
                return option.text;
            }
        } probe;
        QCOMPARE(probe.textOf(option, model.index(0, 0)), QStringLiteral("yes"));
        QCOMPARE(probe.textOf(option, model.index(1, 0)), NA);
    }

    void shouldMarkIncompleteNodes()
    {
        IncompleteStateDelegate delegate;
        const QColor marker = QApplication::palette().color(QPalette::Highlight);
        const auto countMarker = [&marker](const QImage& image) {
            int count = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    count += QColor(image.pixel(x, y)).rgb() == marker.rgb() ? 1 : 0;
            }
            return count;
        };
        const QImage unchecked = delegate.stateImage(Qt::Unchecked).toImage();
        const QImage incomplete = delegate.stateImage(IncompleteStateDelegate::IncompleteState).toImage();
        QCOMPARE(incomplete.size(), unchecked.size());
        QVERIFY(incomplete != unchecked);
        QVERIFY(countMarker(incomplete) > countMarker(unchecked));
        QVERIFY(delegate.stateImage(Qt::Checked).toImage() != unchecked);

        // In a view the marker is drawn over the row of an incomplete node only.
        QStandardItemModel model;
        for (int state : {0, IncompleteStateDelegate::IncompleteState}) {
            auto* item = new QStandardItem(QStringLiteral("folder"));
            item->setData(state, Qt::CheckStateRole);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            model.appendRow(item);
        }
        QTreeView view;
        view.setModel(&model);
        view.setItemDelegate(&delegate);
        view.resize(200, 80);
        const QImage shot = view.viewport()->grab().toImage();
        const QRect first = view.visualRect(model.index(0, 0));
        const QRect second = view.visualRect(model.index(1, 0));
        QCOMPARE(countMarker(shot.copy(first)), 0);
        QVERIFY(countMarker(shot.copy(second)) > 4);
    }
};

NVB_TEST_MAIN(TestValueDelegates)
#include "tst_valuedelegates.moc"
