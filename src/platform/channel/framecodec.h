#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace NVB::Channel {

// The engine channel's framing, shared by both ends: every frame is a 4-byte
// big-endian length followed by that many bytes of UTF-8 compact JSON, which
// must be one object.
//
// The decoder is fed raw socket bytes and hands out frames one by one. A frame
// whose body is not a JSON object is dropped and the stream goes on, because
// its length still tells where the next frame starts. A length above
// MaxFrameSize means the stream is out of step (or hostile); nothing after it
// can be trusted, so the decoder reports the stream as broken and stops.
class FrameCodec
{
public:
    static constexpr quint32 HeaderSize = 4;
    static constexpr quint32 MaxFrameSize = 64u * 1024u * 1024u;

    enum class Status {
        NeedMore, // no complete frame buffered yet
        Frame, // object() holds the next frame
        Dropped, // one frame was skipped; error() says why
        Broken // the stream cannot be read any further; error() says why
    };

    struct Result
    {
        Status status = Status::NeedMore;
        QJsonObject object;
        QString error;
    };

    static QByteArray encode(const QJsonObject& object);
    // Frames an already serialised body; used by the benchmark and by tests
    // that need to send malformed bodies.
    static QByteArray encodeRaw(const QByteArray& body);

    void append(const QByteArray& bytes);
    Result next();

    bool isBroken() const { return m_broken; }
    int bufferedBytes() const { return m_buffer.size() - m_offset; }
    void reset();

private:
    QByteArray m_buffer;
    int m_offset = 0;
    bool m_broken = false;
};

} // namespace NVB::Channel
