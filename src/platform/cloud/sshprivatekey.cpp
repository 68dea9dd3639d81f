#include "sshprivatekey.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <libssh/libssh.h>

#include <QFile>

namespace NVL::Cloud {

namespace {

// libssh asks for the passphrase only when the key is encrypted.
int notePassphraseWanted(const char*, char*, size_t, int, int, void* userdata)
{
    *static_cast<bool*>(userdata) = true;
    return -1;
}

} // namespace

bool SshPrivateKey::isEncrypted(const QString& text)
{
    bool wanted = false;
    ssh_key key = nullptr;
    const QByteArray bytes = text.toUtf8();
    if (ssh_pki_import_privkey_base64(bytes.constData(), nullptr, notePassphraseWanted, &wanted, &key) == SSH_OK)
        ssh_key_free(key);
    return wanted || bytes.contains("ENCRYPTED");
}

SshPrivateKey::Loaded SshPrivateKey::read(const QString& path)
{
    Loaded loaded;
    if (path.trimmed().isEmpty()) {
        loaded.error = QStringLiteral("No private key file is chosen");
        return loaded;
    }
    const QByteArray name = QFile::encodeName(path);
    // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer.
    const int fd = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        loaded.error = QStringLiteral("Can't open the private key file \"%1\": %2")
                           .arg(path, QString::fromLocal8Bit(strerror(errno)));
        return loaded;
    }
    struct stat info
    {
    };
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        loaded.error = QStringLiteral("\"%1\" is not a regular file").arg(path);
        return loaded;
    }
    if (info.st_size > MaxSize) {
        ::close(fd);
        loaded.error = QStringLiteral("\"%1\" is larger than %2 KiB: not a private key").arg(path).arg(MaxSize / 1024);
        return loaded;
    }
    QByteArray bytes;
    char buffer[4096];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof(buffer));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        bytes.append(buffer, int(got));
        if (bytes.size() > MaxSize)
            break;
    }
    ::close(fd);
    if (bytes.size() > MaxSize) {
        loaded.error = QStringLiteral("\"%1\" is larger than %2 KiB: not a private key").arg(path).arg(MaxSize / 1024);
        return loaded;
    }
    if (!bytes.contains("PRIVATE KEY-----")) {
        loaded.error = QStringLiteral("\"%1\" holds no private key").arg(path);
        return loaded;
    }
    loaded.text = QString::fromUtf8(bytes);
    loaded.encrypted = isEncrypted(loaded.text);
    return loaded;
}

} // namespace NVL::Cloud
