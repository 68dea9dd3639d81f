#pragma once

#include <QByteArray>
#include <QString>

namespace NVL::Cloud {

// Remote file names are bytes; keys are strings. A name that is not UTF-8
// (a Latin-1 "café" from an old server) must still come back to the server
// byte for byte when a listing enters it, so decoding is reversible: every
// byte of an invalid sequence becomes one character of the private-use range
// U+F700..U+F7FF, and a real character of that range is stored the same way,
// byte by byte, so it cannot be mistaken for an escape.
class RemoteName
{
public:
    static QString decode(const QByteArray& bytes);
    static QByteArray encode(const QString& name);
    // For people: escaped bytes shown as \xNN.
    static QString display(const QString& name);
};

} // namespace NVL::Cloud
