#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

#include "retention/retentionjob.h"
#include "retention/retentionrules.h"

namespace NVB::Engine {

class StorageDriver;

// Applies a new-format plan's retention after one of its runs made a restore
// point. The same planner as the legacy format decides, a version being a
// file's content between changes (its size and modification time). Then, in
// this order: the store forgets the expired files and points in one
// transaction; expired points' trees go and trimmed points' trees are
// rewritten without the expired files; a generation left without points is
// removed whole; every other generation touched is pruned (RepositoryPruner).
// The newest point, and so everything the running plan needs, is never
// touched. A cut at any step leaves every listed point restorable: at worst
// trees and chunks stay that the store no longer lists.
class ArchiveRetentionJob
{
public:
    struct Parameters
    {
        QString storeFile;
        QUuid connectionId;
        QUuid bunchId;
        QString storageRoot;
        QString repositoryRoot;
        QString password; // of the plan: opens the generations to trim
        RetentionRules rules;
        QDateTime now;
        StorageDriver* driver = nullptr; // tests; otherwise File System
        qint64 packSize = 0; // of repacked packs; 0: the default
    };

    static RetentionJob::Result apply(const Parameters& parameters);
};

} // namespace NVB::Engine
