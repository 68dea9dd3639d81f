#pragma once

#include <QSet>

#include "runs/filebackupjob.h"

// A previous restore point held in memory, as the store hands it to a run
// folder by folder, and a run's changes applied to it.
namespace PreviousPoint {

inline void use(const QList<NVB::Engine::StoredContent>& content, NVB::Engine::FileBackupJob::Parameters* parameters)
{
    QSet<QString> parents;
    for (const auto& item : content)
        parents.insert(item.parentPath());
    parameters->previousParents = QStringList(parents.cbegin(), parents.cend());
    parameters->previousChildren = [content](const QString& folder) {
        QList<NVB::Engine::StoredContent> children;
        for (const auto& item : content) {
            if (item.parentPath() == folder)
                children.append(item);
        }
        return std::optional<QList<NVB::Engine::StoredContent>>(children);
    };
}

inline QList<NVB::Engine::StoredContent> applied(
    const QList<NVB::Engine::StoredContent>& previous, const NVB::Engine::FileBackupJob::Result& result)
{
    QSet<QString> replaced(result.removed.cbegin(), result.removed.cend());
    for (const auto& item : result.content)
        replaced.insert(item.path);
    const QSet<QString> emptied(result.emptiedFolders.cbegin(), result.emptiedFolders.cend());
    QList<NVB::Engine::StoredContent> content = result.content;
    for (const auto& item : previous) {
        if (!replaced.contains(item.path) && !emptied.contains(item.parentPath()))
            content.append(item);
    }
    return content;
}

} // namespace PreviousPoint
