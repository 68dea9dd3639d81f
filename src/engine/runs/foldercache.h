#pragma once

#include <QByteArray>

#include "folderhandle.h"

namespace NVB::Engine {

// The last folder opened below a base. Files of one folder follow each other
// in a walk, and so do their objects: each folder is opened once, not once
// per file.
class FolderCache
{
public:
    // `relative` below `base` (made when `create`), or null with *error set.
    const FolderHandle* open(const FolderHandle& base, const QByteArray& relative, bool create, QString* error);
    void clear() { m_handle = FolderHandle(); }

private:
    QByteArray m_relative;
    FolderHandle m_handle;
};

} // namespace NVB::Engine
