#pragma once

#include <QUuid>

namespace NVB::Common::Communication {

namespace UuidLiteralDetail {

constexpr uint hexDigit(char c)
{
    return (c >= '0' && c <= '9') ? uint(c - '0')
        : (c >= 'a' && c <= 'f')  ? uint(c - 'a' + 10)
        : (c >= 'A' && c <= 'F')  ? uint(c - 'A' + 10)
                                  : throw "not a hexadecimal digit";
}

constexpr uint hex(const char* text, int from, int count)
{
    uint value = 0;
    for (int i = 0; i < count; ++i)
        value = value * 16 + hexDigit(text[from + i]);
    return value;
}

} // namespace UuidLiteralDetail

// A QUuid constant written in its text form, "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}",
// checked and converted by the compiler, so that the ids of the catalogue read
// as they travel.
constexpr QUuid uuidLiteral(const char (&text)[39])
{
    using UuidLiteralDetail::hex;
    return (text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' || text[24] != '-'
               || text[37] != '}')
        ? throw "not a braced uuid"
        : QUuid(hex(text, 1, 8), ushort(hex(text, 10, 4)), ushort(hex(text, 15, 4)), uchar(hex(text, 20, 2)),
            uchar(hex(text, 22, 2)), uchar(hex(text, 25, 2)), uchar(hex(text, 27, 2)), uchar(hex(text, 29, 2)),
            uchar(hex(text, 31, 2)), uchar(hex(text, 33, 2)), uchar(hex(text, 35, 2)));
}

} // namespace NVB::Common::Communication
