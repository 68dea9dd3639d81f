#pragma once

#include <QString>
#include <QUuid>

#include "folderhandle.h"

namespace NVB::Engine {

class EngineStore;

// The folder of a File System account that a run reads or writes. A drive
// that is not mounted leaves an empty mount point behind, and writing there
// would fill the system disk: the folder must exist, and the account's own
// folder below it, NVB_<prefix>, must carry the marker file that the engine
// writes when it first prepares it.
class AccountFolder
{
public:
    // The account's folder, ending in a slash, with its prefix in *prefix;
    // or an empty text with the reason in *error.
    static QString prepare(EngineStore* store, const QUuid& accountId, QString* prefix, QString* error);
    // A run's own folder, `objectPrefix` below the account's folder, made
    // afresh: an existing one belongs to another run and is never written
    // into. Invalid, with the reason in *error, when it cannot be made.
    static FolderHandle makeRunFolder(const FolderHandle& storage, const QString& objectPrefix, QString* error);
    // The marker file in NVB_<prefix>, holding the account's id.
    static QString markerFileName() { return QStringLiteral(".nvb-account"); }
};

} // namespace NVB::Engine
