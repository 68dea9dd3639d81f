#include "bytename.h"

namespace NVL {

namespace {

constexpr char16_t EscapeBase = 0xF700;

bool isEscape(uint code)
{
    return code >= EscapeBase && code <= EscapeBase + 0xFF;
}

// Length of the well-formed UTF-8 sequence at i, its code point in *code, or
// 0 when the bytes there are not one.
int sequenceAt(const QByteArray& bytes, int i, uint* code)
{
    const auto byte = [&bytes](int at) { return static_cast<unsigned char>(bytes.at(at)); };
    const unsigned char lead = byte(i);
    int length = 0;
    uint value = 0;
    uint minimum = 0;
    if (lead < 0x80) {
        *code = lead;
        return 1;
    } else if ((lead & 0xE0) == 0xC0) {
        length = 2, value = lead & 0x1F, minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, value = lead & 0x0F, minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, value = lead & 0x07, minimum = 0x10000;
    } else {
        return 0;
    }
    if (i + length > bytes.size())
        return 0;
    for (int k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (byte(i + k) & 0x3F);
    }
    // Overlong forms, surrogates and values past Unicode are not UTF-8.
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    *code = value;
    return length;
}

} // namespace

QString ByteName::decode(const QByteArray& bytes)
{
    QString result;
    result.reserve(bytes.size());
    int i = 0;
    while (i < bytes.size()) {
        uint code = 0;
        const int length = sequenceAt(bytes, i, &code);
        if (length == 0 || isEscape(code)) {
            const int count = length == 0 ? 1 : length;
            for (int k = 0; k < count; ++k)
                result.append(QChar(char16_t(EscapeBase + static_cast<unsigned char>(bytes.at(i + k)))));
            i += count;
            continue;
        }
        if (QChar::requiresSurrogates(code)) {
            result.append(QChar(QChar::highSurrogate(code)));
            result.append(QChar(QChar::lowSurrogate(code)));
        } else {
            result.append(QChar(char16_t(code)));
        }
        i += length;
    }
    return result;
}

QByteArray ByteName::encode(const QString& name)
{
    QByteArray result;
    result.reserve(name.size());
    int start = 0;
    for (int i = 0; i < name.size(); ++i) {
        const uint code = name.at(i).unicode();
        if (!isEscape(code))
            continue;
        result.append(name.midRef(start, i - start).toUtf8());
        result.append(char(code - EscapeBase));
        start = i + 1;
    }
    result.append(name.midRef(start).toUtf8());
    return result;
}

QString ByteName::display(const QString& name)
{
    QString result;
    for (const QChar c : name) {
        if (isEscape(c.unicode()))
            result.append(QStringLiteral("\\x%1").arg(uint(c.unicode() - EscapeBase), 2, 16, QLatin1Char('0')));
        else
            result.append(c);
    }
    return result;
}

} // namespace NVL
