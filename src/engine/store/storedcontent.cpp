#include "storedcontent.h"

namespace NVB::Engine {

QString StoredContent::parentPath() const
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash <= 0)
        return path == QLatin1String("/") ? QString() : QStringLiteral("/");
    return path.left(slash);
}

QString StoredContent::name() const
{
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? path : path.mid(slash + 1);
}

} // namespace NVB::Engine
