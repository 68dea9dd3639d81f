#pragma once

#include <atomic>
#include <functional>
#include <optional>

#include <QString>
#include <QStringList>

namespace NVB::Engine {

class FileSelection;

// A quick walk over a plan's sources before anything is copied: it counts the
// files and bytes the run will take, so that progress can be told as a share
// of the whole and a time left. It reads only names and sizes.
class TransferScan
{
public:
    struct Totals
    {
        qint64 count = 0;
        qint64 size = 0;
    };

    // `neverTaken` answers true for paths the job leaves out on its own
    // (its storage, the engine's data); `oneFileSystem` unset means "only
    // for the root folder /", as the backup job decides.
    static Totals count(const FileSelection& selection, const std::function<bool(const QString&)>& neverTaken,
        std::optional<bool> oneFileSystem, bool followFileSymlinks, const std::atomic_bool& stop);
};

} // namespace NVB::Engine
