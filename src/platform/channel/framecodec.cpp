#include "framecodec.h"

#include <QJsonDocument>
#include <QJsonParseError>
#include <QtEndian>

namespace NVB::Channel {

QByteArray FrameCodec::encode(const QJsonObject& object)
{
    return encodeRaw(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QByteArray FrameCodec::encodeRaw(const QByteArray& body)
{
    QByteArray frame;
    frame.resize(int(HeaderSize) + body.size());
    qToBigEndian<quint32>(quint32(body.size()), frame.data());
    memcpy(frame.data() + HeaderSize, body.constData(), size_t(body.size()));
    return frame;
}

void FrameCodec::append(const QByteArray& bytes)
{
    if (m_broken)
        return;
    // Compact the buffer only when the consumed part dominates, so a burst of
    // small frames costs no quadratic copying.
    if (m_offset > 0 && m_offset >= m_buffer.size() / 2) {
        m_buffer.remove(0, m_offset);
        m_offset = 0;
    }
    m_buffer.append(bytes);
}

FrameCodec::Result FrameCodec::next()
{
    Result result;
    if (m_broken) {
        result.status = Status::Broken;
        result.error = QStringLiteral("Channel stream is broken");
        return result;
    }
    if (bufferedBytes() < int(HeaderSize))
        return result;

    const quint32 length = qFromBigEndian<quint32>(m_buffer.constData() + m_offset);
    if (length > MaxFrameSize) {
        m_broken = true;
        m_buffer.clear();
        m_offset = 0;
        result.status = Status::Broken;
        result.error
            = QStringLiteral("Channel frame of %1 bytes exceeds the limit of %2 bytes").arg(length).arg(MaxFrameSize);
        return result;
    }
    if (quint32(bufferedBytes()) - HeaderSize < length)
        return result;

    const QByteArray body = QByteArray::fromRawData(m_buffer.constData() + m_offset + HeaderSize, int(length));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parseError);
    m_offset += int(HeaderSize + length);
    if (m_offset == m_buffer.size()) {
        m_buffer.clear();
        m_offset = 0;
    }

    if (parseError.error != QJsonParseError::NoError) {
        result.status = Status::Dropped;
        result.error = QStringLiteral("Channel frame is not JSON: %1").arg(parseError.errorString());
    } else if (!document.isObject()) {
        result.status = Status::Dropped;
        result.error = QStringLiteral("Channel frame is not a JSON object");
    } else {
        result.status = Status::Frame;
        result.object = document.object();
    }
    return result;
}

void FrameCodec::reset()
{
    m_buffer.clear();
    m_offset = 0;
    m_broken = false;
}

} // namespace NVB::Channel
