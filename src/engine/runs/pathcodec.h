#pragma once

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

// File names are bytes; the store, the channel and the console keep text.
// This codec turns any byte name into text and back without loss: valid
// UTF-8 reads as itself, every byte that is not part of valid UTF-8 becomes
// the escape U+F8FF followed by U+F700 plus the byte, and a real U+F8FF is
// doubled. Two names that differ in their bytes never share a text, and
// every name the user can type reads as the user typed it.
class PathCodec
{
public:
    static QString decode(const QByteArray& bytes);
    static QByteArray encode(const QString& text);

    static constexpr char16_t Escape = 0xF8FF;
    static constexpr char16_t ByteBase = 0xF700;
};

} // namespace NVB::Engine
