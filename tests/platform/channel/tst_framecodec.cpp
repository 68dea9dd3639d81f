#include <QJsonArray>
#include <QJsonDocument>
#include <QtEndian>

#include "channel/framecodec.h"
#include "testmain.h"

using NVB::Channel::FrameCodec;

class TestFrameCodec : public QObject
{
    Q_OBJECT
private slots:
    void shouldFrameWithBigEndianLength();
    void shouldDecodeFramesSplitAtEveryByte();
    void shouldDecodeManyFramesFromOneChunk();
    void shouldDropUnreadableFrameAndKeepReading_data();
    void shouldDropUnreadableFrameAndKeepReading();
    void shouldBreakOnOversizedLength();
    void shouldWaitForBodyUpToTheLimit();
};

void TestFrameCodec::shouldFrameWithBigEndianLength()
{
    const QByteArray frame = FrameCodec::encode(QJsonObject {{QStringLiteral("a"), 1}});
    QCOMPARE(frame.mid(4), QByteArray("{\"a\":1}"));
    QCOMPARE(frame.left(4), QByteArray("\0\0\0\x07", 4));
}

void TestFrameCodec::shouldDecodeFramesSplitAtEveryByte()
{
    const QJsonObject object {{QStringLiteral("text"), QStringLiteral("grüße")}, {QStringLiteral("n"), 42}};
    const QByteArray bytes = FrameCodec::encode(object) + FrameCodec::encode(QJsonObject {});
    FrameCodec codec;
    QList<QJsonObject> frames;
    for (char byte : bytes) {
        codec.append(QByteArray(1, byte));
        for (auto result = codec.next(); result.status != FrameCodec::Status::NeedMore; result = codec.next()) {
            QCOMPARE(result.status, FrameCodec::Status::Frame);
            frames.append(result.object);
        }
    }
    QCOMPARE(frames.size(), 2);
    QCOMPARE(frames.at(0), object);
    QCOMPARE(frames.at(1), QJsonObject());
    QCOMPARE(codec.bufferedBytes(), 0);
}

void TestFrameCodec::shouldDecodeManyFramesFromOneChunk()
{
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += FrameCodec::encode(QJsonObject {{QStringLiteral("i"), i}});
    FrameCodec codec;
    codec.append(bytes);
    for (int i = 0; i < 1000; ++i) {
        const auto result = codec.next();
        QCOMPARE(result.status, FrameCodec::Status::Frame);
        QCOMPARE(result.object.value(QStringLiteral("i")).toInt(), i);
    }
    QCOMPARE(codec.next().status, FrameCodec::Status::NeedMore);
}

void TestFrameCodec::shouldDropUnreadableFrameAndKeepReading_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("not JSON") << QByteArray("{not json");
    QTest::newRow("array") << QByteArray("[1,2]");
    QTest::newRow("string") << QByteArray("\"text\"");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe", 3);
}

void TestFrameCodec::shouldDropUnreadableFrameAndKeepReading()
{
    QFETCH(QByteArray, body);
    FrameCodec codec;
    codec.append(FrameCodec::encodeRaw(body) + FrameCodec::encode(QJsonObject {{QStringLiteral("ok"), true}}));
    const auto dropped = codec.next();
    QCOMPARE(dropped.status, FrameCodec::Status::Dropped);
    QVERIFY(!dropped.error.isEmpty());
    const auto good = codec.next();
    QCOMPARE(good.status, FrameCodec::Status::Frame);
    QCOMPARE(good.object.value(QStringLiteral("ok")).toBool(), true);
    QVERIFY(!codec.isBroken());
}

void TestFrameCodec::shouldBreakOnOversizedLength()
{
    QByteArray header(4, '\0');
    qToBigEndian<quint32>(FrameCodec::MaxFrameSize + 1, header.data());
    FrameCodec codec;
    codec.append(header + FrameCodec::encode(QJsonObject {}));
    const auto result = codec.next();
    QCOMPARE(result.status, FrameCodec::Status::Broken);
    QVERIFY(codec.isBroken());
    // Nothing after a lost framing is trusted, not even a well-formed frame.
    codec.append(FrameCodec::encode(QJsonObject {}));
    QCOMPARE(codec.next().status, FrameCodec::Status::Broken);
    codec.reset();
    codec.append(FrameCodec::encode(QJsonObject {}));
    QCOMPARE(codec.next().status, FrameCodec::Status::Frame);
}

void TestFrameCodec::shouldWaitForBodyUpToTheLimit()
{
    QByteArray header(4, '\0');
    qToBigEndian<quint32>(FrameCodec::MaxFrameSize, header.data());
    FrameCodec codec;
    codec.append(header + QByteArray(1024, ' '));
    QCOMPARE(codec.next().status, FrameCodec::Status::NeedMore);
    QVERIFY(!codec.isBroken());
}

NVB_TEST_GUILESS_MAIN(TestFrameCodec)
#include "tst_framecodec.moc"
