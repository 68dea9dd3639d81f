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
    // followed, since that path was chosen on purpose.
    static FolderHandle openAbsolute(const QByteArray& path, QString* error);
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
    explicit FolderHandle(int fd)
        : m_fd(fd)
    { }
    int m_fd = -1;
};

} // namespace NVB::Engine
