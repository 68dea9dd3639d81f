#include "models/iconprovider.h"

namespace NVB::GUI {

IconProvider::IconProvider() = default;

QIcon IconProvider::icon(IconType type) const
{
    auto found = m_icons.constFind(int(type));
    if (found != m_icons.constEnd())
        return *found;
    const QIcon made = QFileIconProvider::icon(type);
    m_icons.insert(int(type), made);
    return made;
}

} // namespace NVB::GUI
