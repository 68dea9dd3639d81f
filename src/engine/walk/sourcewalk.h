#pragma once

#include <atomic>
#include <optional>
#include <sys/stat.h>

#include <QString>
#include <QStringList>

namespace NVB::Engine {

class FileSelection;

// Walks a plan's sources the way every file backup takes them: the chosen
// roots (a link there is followed, since it was chosen on purpose), then each
// folder's entries before its subfolders. Folders behind links are never
// entered, so loops and surprise trees stay out; the storage and the engine's
// own data are never taken; another file system is entered only when asked.
// What to do with each item is the visitor's.
class SourceWalk
{
public:
    class Visitor
    {
    public:
        virtual ~Visitor() = default;
        // Something of the selection that cannot be read.
        virtual void failed(const QString& path, const QString& message) = 0;
        virtual void file(const QString& path, const struct stat& info, bool followedLink) = 0;
        // A link kept as a link; `target` as NVL::ByteName text.
        virtual void link(const QString& path, const struct stat& info, const QString& target) = 0;
        // Before a root is taken (with its parent folder) and around each
        // folder's own walk; `leaveFolder` after everything below it.
        virtual void beginRoot(const QString& root) { Q_UNUSED(root) }
        virtual void enterFolder(const QString& path, const struct stat& info, bool isRoot) = 0;
        virtual void leaveFolder(const QString& path, const struct stat& info, bool isRoot) = 0;
        // A folder's entries are about to be read, and every one of them
        // (subfolders included) was handed over.
        virtual void folderOpened(const QString& folder) { Q_UNUSED(folder) }
        virtual void folderClosed(const QString& folder) { Q_UNUSED(folder) }
        // True ends the walk at the next item.
        virtual bool stopped() const = 0;
    };

    struct Options
    {
        bool followFileSymlinks = false;
        // Unset: only for the root "/", where crossing would take /proc,
        // /sys and every mounted drive.
        std::optional<bool> oneFileSystem;
        QStringList neverTaken;
        // Links are left out altogether, neither kept nor followed.
        bool skipSymlinks = false;
    };

    SourceWalk(const FileSelection& selection, Options options);

    void walk(Visitor& visitor);
    bool isNeverTaken(const QString& path) const;

private:
    void walkFolder(const QString& folder, dev_t device, Visitor& visitor);

    const FileSelection& m_selection;
    Options m_options;
    bool m_oneFileSystem = false;
};

} // namespace NVB::Engine
