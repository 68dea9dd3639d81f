#pragma once

#include <atomic>
#include <functional>
#include <sys/stat.h>

#include <QByteArray>
#include <QString>

#include "encryption/objectkey.h"
#include "objectencoding.h"

namespace NVB::Engine {

class FolderHandle;

// Copies an open regular file into a folder under a name, taking its SHA-256
// on the way. The data goes to an unnamed file (O_TMPFILE; where the file
// system lacks it, a fresh name opened with O_EXCL|O_NOFOLLOW) that gets its
// name only once whole, so a run that is stopped, fails or is
// killed never leaves a file that looks complete, and no name of the user's
// can be hit by the temporary one.
//
// Flushing is left to the caller: one syncfs() of the storage at the end of a
// run costs far less than an fsync() a file, and nothing refers to a copy
// before the run's restore point is committed after that syncfs().
class FileCopier
{
public:
    enum class Status { Done, Failed, Stopped, Discarded };

    struct Options
    {
        // Replace a file of that name atomically (a restore); otherwise an
        // existing name fails the copy (a backup never overwrites an object).
        bool replace = false;
        struct timespec times[2] = {{0, UTIME_OMIT}, {0, UTIME_OMIT}};
        mode_t mode = 0600;
        bool setOwner = false;
        uid_t owner = 0;
        gid_t group = 0;
        // When not empty, data whose SHA-256 differs is not put in place.
        QByteArray expectedChecksum;
        // How the source holds the data (a restore reads a compressed
        // object) and how the copy is to hold it (a backup compresses).
        ObjectEncoding readEncoding = ObjectEncoding::Plain;
        ObjectEncoding writeEncoding = ObjectEncoding::Plain;
        // The key of an enciphered copy, the password of an enciphered source.
        std::shared_ptr<const ObjectKey> writeKey;
        QString readPassword;
        // Asked once the data is written; false throws the copy away (the
        // source changed while it was read).
        std::function<bool()> keep;
        // Set: the plain data comes from here instead of `from` (a block
        // increment being made or read back): bytes, 0 at the end, or -1
        // with the message in the QString.
        std::function<ssize_t(char*, size_t, QString*)> source;
        // Set: sees the plain data as it is copied.
        std::function<void(const char*, size_t)> observe;
        // Written to the copy as it is, ahead of the encoded data.
        QByteArray prologue;
    };

    struct Result
    {
        Status status = Status::Failed;
        QString error;
        QByteArray checksum;
        qint64 size = 0; // plain bytes
        qint64 storedSize = 0; // bytes in the copy
        // The failure was on the writing side (a full or broken storage),
        // which no other file will get past either.
        bool targetFailed = false;
    };

    // `what` names the source in messages. `stop` is checked between blocks,
    // so a large file is abandoned within a fraction of a second.
    static Result copy(int from, const FolderHandle& folder, const QByteArray& name, const Options& options,
        const std::atomic_bool* stop, const QString& what);

    // SHA-256 of the plain data `fd` holds from its current offset; empty on
    // a read error, damaged compressed data or when stopped.
    static QByteArray checksum(
        int fd, ObjectEncoding encoding, const std::atomic_bool* stop, const QString& password = QString());
    // The same of what `source` hands out (as Options::source); empty with
    // `error` set when it fails.
    static QByteArray checksum(
        const std::function<ssize_t(char*, size_t, QString*)>& source, const std::atomic_bool* stop, QString* error);

    // The prefix of the fallback temporary names, for sweeping leftovers.
    static QByteArray temporaryPrefix();
};

} // namespace NVB::Engine
