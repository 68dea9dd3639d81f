#pragma once

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

// An open folder, reached one component at a time with O_NOFOLLOW, so that a
// link planted anywhere on the way cannot send a write somewhere else. Every
// relative path given here is checked to stay below its base: empty, "." and
// ".." components are refused.
class FolderHandle
{
public:
    FolderHandle() = default;
    ~FolderHandle();
    FolderHandle(FolderHandle&& other) noexcept;
    FolderHandle& operator=(FolderHandle&& other) noexcept;
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;

    // An absolute folder, as the user named it: links on its own path are
    // followed, since that path was chosen on purpose. With
    // `followSystemLinks`, folders below it may also be reached through
    // links that root (or the engine's own user) owns, such as /bin on a
    // merged /usr: a restore to the original place needs the system's own
    // layout, while a link that another user planted is never followed.
    static FolderHandle openAbsolute(const QByteArray& path, QString* error, bool followSystemLinks = false);
    // `relative` below this folder; missing folders are made (0700) when
    // `create` is set.
    FolderHandle openBelow(const QByteArray& relative, bool create, QString* error) const;

    FolderHandle duplicate() const;

    bool isValid() const { return m_fd >= 0; }
    int fd() const { return m_fd; }

    // True for a relative path whose every component is a plain name.
    static bool isPlainRelative(const QByteArray& relative);
    // True for an absolute path with no empty, "." or ".." component.
    static bool isPlainAbsolute(const QByteArray& path);

private:
    FolderHandle(int fd, bool followSystemLinks)
        : m_fd(fd)
        , m_followSystemLinks(followSystemLinks)
    { }
    int m_fd = -1;
    bool m_followSystemLinks = false;
};

} // namespace NVB::Engine
