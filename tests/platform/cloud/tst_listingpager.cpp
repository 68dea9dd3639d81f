#include <QtTest>

#include "cloud/providers/listingpager.h"
#include "testmain.h"

using NVL::Cloud::ListingPager;
using NVL::Cloud::ListingRequest;
using NVL::Cloud::Api::ListingObject;

class TestListingPager : public QObject
{
    Q_OBJECT

private slots:
    void shouldMakePrefixRelativeToRoot_data();
    void shouldMakePrefixRelativeToRoot();
    void shouldSplitPrefixIntoFolderAndName_data();
    void shouldSplitPrefixIntoFolderAndName();
    void shouldPageSortedKeysAfterMarker_data();
    void shouldPageSortedKeysAfterMarker();
    void shouldUnderstandOnlySlashDelimiter();
};

void TestListingPager::shouldMakePrefixRelativeToRoot_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("relative");

    QTest::newRow("already relative") << "/srv/backup"
                                      << "NVB_"
                                      << "NVB_";
    QTest::newRow("root itself") << "/srv/backup"
                                 << "/srv/backup"
                                 << "";
    QTest::newRow("root with slash") << "/srv/backup/"
                                     << "/srv/backup/NVB_"
                                     << "NVB_";
    QTest::newRow("root in front") << "/srv/backup"
                                   << "/srv/backup/a/NVB_"
                                   << "a/NVB_";
    QTest::newRow("similar name is no root") << "/srv/backup"
                                             << "/srv/backup2/x"
                                             << "srv/backup2/x";
    QTest::newRow("leading slash dropped") << "data"
                                           << "/x/y"
                                           << "x/y";
    QTest::newRow("filesystem root") << "/"
                                     << "/NVB_"
                                     << "NVB_";
    QTest::newRow("empty") << "/srv"
                           << ""
                           << "";
}

void TestListingPager::shouldMakePrefixRelativeToRoot()
{
    QFETCH(QString, root);
    QFETCH(QString, prefix);
    QFETCH(QString, relative);
    QCOMPARE(ListingPager::relativePrefix(root, prefix), relative);
}

void TestListingPager::shouldSplitPrefixIntoFolderAndName_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("name");

    QTest::newRow("name only") << "NVB_"
                               << ""
                               << "NVB_";
    QTest::newRow("folder and name") << "a/b/NVB_"
                                     << "a/b"
                                     << "NVB_";
    QTest::newRow("folder only") << "a/b/"
                                 << "a/b"
                                 << "";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
}

void TestListingPager::shouldSplitPrefixIntoFolderAndName()
{
    QFETCH(QString, prefix);
    QFETCH(QString, folder);
    QFETCH(QString, name);
    const auto split = ListingPager::splitPrefix(prefix);
    QCOMPARE(split.first, folder);
    QCOMPARE(split.second, name);
}

void TestListingPager::shouldPageSortedKeysAfterMarker_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("marker");
    QTest::addColumn<int>("maxKeys");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("nextMarker");

    QTest::newRow("all") << ""
                         << "" << 0 << QStringList({"NVB_a", "NVB_b", "NVB_c", "x"}) << "";
    QTest::newRow("prefix") << "NVB_"
                            << "" << 0 << QStringList({"NVB_a", "NVB_b", "NVB_c"}) << "";
    QTest::newRow("first page") << ""
                                << "" << 2 << QStringList({"NVB_a", "NVB_b"}) << "NVB_b";
    QTest::newRow("second page") << ""
                                 << "NVB_b" << 2 << QStringList({"NVB_c", "x"}) << "";
    QTest::newRow("exact fit has no next page") << ""
                                                << "" << 4 << QStringList({"NVB_a", "NVB_b", "NVB_c", "x"}) << "";
    QTest::newRow("marker past end") << ""
                                     << "z" << 2 << QStringList() << "";
}

void TestListingPager::shouldPageSortedKeysAfterMarker()
{
    QFETCH(QString, prefix);
    QFETCH(QString, marker);
    QFETCH(int, maxKeys);
    QFETCH(QStringList, keys);
    QFETCH(QString, nextMarker);

    const QVector<ListingObject> entries
        = {ListingObject("x", false, 1, QDateTime()), ListingObject("NVB_c", true, 0, QDateTime()),
            ListingObject("NVB_a", true, 0, QDateTime()), ListingObject("NVB_b", false, 3, QDateTime())};
    ListingRequest request;
    request.prefix = prefix;
    request.marker = marker;
    request.maxKeys = static_cast<unsigned short>(maxKeys);
    const auto result = ListingPager::page(entries, request);
    QVERIFY(!result.isError());
    QStringList actual;
    for (const QJsonValue& value : result.data)
        actual.append(ListingObject(value.toObject()).name());
    QCOMPARE(actual, keys);
    QCOMPARE(result.marker, nextMarker);
}

void TestListingPager::shouldUnderstandOnlySlashDelimiter()
{
    QVERIFY(ListingPager::isSupportedDelimiter(QString()));
    QVERIFY(ListingPager::isSupportedDelimiter(QStringLiteral("/")));
    QVERIFY(!ListingPager::isSupportedDelimiter(QStringLiteral("|")));
}

NVB_TEST_GUILESS_MAIN(TestListingPager)
#include "tst_listingpager.moc"
