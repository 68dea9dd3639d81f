#pragma once

#include <optional>

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

class FolderHandle;

// The plain start of an increment object: which full version its blocks
// apply to. It is readable without the plan's password, so retention and the
// consistency check see what an increment depends on; it names only the
// full version's object, whose name an enciphered plan already hides.
//
// What follows it is in the object's own encoding (compressed, enciphered):
// the full version's size, then each changed block as its index, length
// and bytes, in file order, then an end mark, the file's size and its
// SHA-256. Increments are cumulative: each holds every block that differs
// from the full version, so a restore needs the full and one increment.
struct IncrementHeader
{
    quint32 blockSize = 0;
    int baseEncoding = 0;
    QString baseObject; // below the account's folder

    QByteArray toBytes() const;
    // Reads exactly the header from `fd`'s current offset.
    static std::optional<IncrementHeader> read(int fd, QString* error);
    // The header of a stored increment object, opened without following links.
    static std::optional<IncrementHeader> ofObject(const FolderHandle& storage, const QString& object, QString* error);
    // Opens `object` below `storage` for reading, or -1 with `error` set.
    static int openObject(const FolderHandle& storage, const QString& object, QString* error);

    static constexpr quint64 EndMark = ~quint64(0);
};

} // namespace NVB::Engine
