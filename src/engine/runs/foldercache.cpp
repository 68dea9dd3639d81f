#include "foldercache.h"

namespace NVB::Engine {

const FolderHandle* FolderCache::open(const FolderHandle& base, const QByteArray& relative, bool create, QString* error)
{
    if (!m_handle.isValid() || m_relative != relative) {
        m_relative = relative;
        m_handle = base.openBelow(relative, create, error);
    }
    return m_handle.isValid() ? &m_handle : nullptr;
}

} // namespace NVB::Engine
