#pragma once

#include <QByteArray>
#include <QString>

namespace NVL {

// File names are bytes, on this machine and on remote servers; the store,
// the channel, keys and the console keep text. A name that is not UTF-8 (a
// Latin-1 "café" from an old server or an old disk) must still come back byte
// for byte when a listing enters it or a restore writes it, and two such
// names must never read as one, so decoding is reversible: every
// byte of an invalid sequence becomes one character of the private-use range
// U+F700..U+F7FF, and a real character of that range is stored the same way,
// byte by byte, so it cannot be mistaken for an escape.
class ByteName
{
public:
    static QString decode(const QByteArray& bytes);
    static QByteArray encode(const QString& name);
    // For people: escaped bytes shown as \xNN.
    static QString display(const QString& name);
};

} // namespace NVL
