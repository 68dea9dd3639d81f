#pragma once

#include <QString>

namespace NVL::Cloud {

// Reads an SSH private key file for an account dialog. Meant for a worker
// thread: a path may name a FIFO, a device or a file on a hung network
// mount, and only a regular file of at most MaxSize bytes is read.
class SshPrivateKey
{
public:
    static constexpr qint64 MaxSize = 64 * 1024;

    struct Loaded
    {
        QString text;
        // Failure text; empty when text holds the key.
        QString error;
        // The key needs a passphrase.
        bool encrypted = false;
    };

    static Loaded read(const QString& path);
    // Whether libssh needs a passphrase for this key text.
    static bool isEncrypted(const QString& text);
};

} // namespace NVL::Cloud
