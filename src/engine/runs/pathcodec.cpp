#include "pathcodec.h"

namespace NVB::Engine {

namespace {

// Length of the valid UTF-8 sequence at `at`, or 0 when the byte there
// starts none (overlong forms, surrogates and values past U+10FFFF are not
// valid either).
int sequenceLength(const QByteArray& bytes, int at, uint* codePoint)
{
    const auto byte = [&bytes](int i) { return uchar(bytes.at(i)); };
    const uchar lead = byte(at);
    if (lead < 0x80) {
        *codePoint = lead;
        return 1;
    }
    int length = 0;
    uint value = 0;
    uint minimum = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        value = lead & 0x1F;
        minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        value = lead & 0x0F;
        minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        value = lead & 0x07;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (at + length > bytes.size())
        return 0;
    for (int i = 1; i < length; ++i) {
        const uchar next = byte(at + i);
        if ((next & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (next & 0x3F);
    }
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    *codePoint = value;
    return length;
}

} // namespace

QString PathCodec::decode(const QByteArray& bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (int at = 0; at < bytes.size();) {
        uint codePoint = 0;
        const int length = sequenceLength(bytes, at, &codePoint);
        if (length == 0) {
            text.append(QChar(Escape));
            text.append(QChar(char16_t(ByteBase + uchar(bytes.at(at)))));
            ++at;
            continue;
        }
        if (codePoint == Escape)
            text.append(QChar(Escape));
        if (QChar::requiresSurrogates(codePoint)) {
            text.append(QChar(QChar::highSurrogate(codePoint)));
            text.append(QChar(QChar::lowSurrogate(codePoint)));
        } else {
            text.append(QChar(char16_t(codePoint)));
        }
        at += length;
    }
    return text;
}

QByteArray PathCodec::encode(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    int plainFrom = 0;
    for (int at = 0; at < text.size(); ++at) {
        if (text.at(at).unicode() != Escape || at + 1 >= text.size())
            continue;
        const char16_t next = text.at(at + 1).unicode();
        if (next != Escape && (next < ByteBase || next > ByteBase + 0xFF))
            continue;
        bytes += text.mid(plainFrom, at - plainFrom).toUtf8();
        if (next == Escape)
            bytes += QString(QChar(Escape)).toUtf8();
        else
            bytes += char(next - ByteBase);
        ++at;
        plainFrom = at + 1;
    }
    bytes += text.mid(plainFrom).toUtf8();
    return bytes;
}

} // namespace NVB::Engine
