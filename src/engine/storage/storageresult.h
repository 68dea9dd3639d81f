#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace NVB::Engine {

// Results of storage drivers. Every driver call answers with one of these
// instead of throwing, since drivers are called from worker threads; an empty
// `error` means success, otherwise it is a sentence naming the object.
struct StorageStatus
{
    QString error;
    bool ok() const { return error.isEmpty(); }
};

struct StorageObjectInfo
{
    QString key;
    qint64 size = 0;
};

struct StorageStat
{
    QString error;
    bool exists = false;
    qint64 size = 0;
    bool ok() const { return error.isEmpty(); }
};

struct StorageRead
{
    QString error;
    QByteArray data;
    bool ok() const { return error.isEmpty(); }
};

struct StorageListing
{
    QString error;
    QVector<StorageObjectInfo> objects; // sorted by key
    bool ok() const { return error.isEmpty(); }
};

} // namespace NVB::Engine
