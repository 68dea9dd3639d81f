#pragma once

#include <memory>

#include <QHash>

#include "planreader.h"
#include "repository/repository.h"
#include "storage/filesystemdriver.h"

namespace NVB::Engine {

// Reads a new-format plan back from a File System account: every
// generation, point and tree is found by listing the plan's repository
// (docs/repository.md). A point's tree holds all a restore needs. An
// enciphered generation opens only with the plan's password; without it its
// points are read as their existence, start and size, with no files.
class ArchiveReader : public PlanReader
{
public:
    ArchiveReader(const QString& accountFolder, const QString& prefix, const QUuid& planId, const QString& password);

    bool isArchive() const override { return true; }
    QString planName() const override { return m_planName; }
    QList<QUuid> generations(QString* error) override;
    QList<int> points(const QUuid& generation, QString* error) override;
    bool read(const QUuid& generation, int sequence, FoundPoint* point, QString* error) override;

private:
    // The generation opened once: a password costs a key derivation.
    const OpenedGeneration& opened(const QUuid& generation);
    bool isEnciphered(const QUuid& generation) const;
    qint64 pointSize(const QUuid& generation, int sequence, const ChunkTransform* transform);

    QString m_accountFolder;
    FileSystemDriver m_driver;
    Repository m_repository;
    QString m_password;
    QString m_planName;
    QHash<QUuid, std::shared_ptr<OpenedGeneration>> m_opened;
};

} // namespace NVB::Engine
