#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace NVB::Engine {

// One object of a restore point: a folder or a file as it was on the source,
// and where the file's data lies in storage.
struct StoredContent
{
    enum Type { Folder = 1, File = 2, Link = 3 };

    QString path; // absolute source path
    int type = File;
    QDateTime modifiedUtc;
    qint64 size = 0;
    bool deleted = false;
    // Path of the data below the account's folder; a file that did not change
    // keeps the object of the run that copied it.
    QString object;
    // SHA-256 of the data, taken while it was copied; empty for copies an
    // older engine made.
    QByteArray checksum;
    // What change detection compares: a file is copied again unless its
    // size, modification time to the nanosecond, inode change time and inode
    // all match the previous restore point's.
    qint64 modifiedNs = 0;
    qint64 changedNs = 0;
    quint64 inode = 0;
    // Put back by a restore: permission bits (0: not known), owner and
    // group (-1: not known; set only by an engine running as root), and
    // for a link its target, as NVL::ByteName text.
    uint mode = 0;
    qint64 owner = -1;
    qint64 group = -1;
    QString linkTarget;
    // How the object holds the data (an ObjectEncoding value) and the
    // object's own size; -1 where it equals `size` (plain copies).
    int encoding = 0;
    qint64 storedSize = -1;

    QString parentPath() const;
    // Every recorded property equal: a point may keep the earlier record.
    bool sameRecord(const StoredContent& other) const;
    QString name() const;
};

} // namespace NVB::Engine
