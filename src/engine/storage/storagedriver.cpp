#include "storagedriver.h"

#include <QStringList>

namespace NVB::Engine {

QString StorageDriver::keyError(const QString& key)
{
    if (key.isEmpty())
        return QStringLiteral("An empty storage key is not allowed.");
    if (key.startsWith(QLatin1Char('/')))
        return QStringLiteral("The storage key \"%1\" is absolute; keys are relative to the storage.").arg(key);
    if (key.contains(QLatin1Char('\\')) || key.contains(QChar(0)))
        return QStringLiteral("The storage key \"%1\" holds a backslash or a NUL character.").arg(key);
    const QStringList segments = key.split(QLatin1Char('/'));
    for (const QString& segment : segments) {
        if (segment.isEmpty() || segment == QLatin1String(".") || segment == QLatin1String(".."))
            return QStringLiteral("The storage key \"%1\" has an empty, \".\" or \"..\" segment.").arg(key);
        if (segment.startsWith(QLatin1String(".tmp-")))
            return QStringLiteral("The storage key \"%1\" uses the reserved prefix \".tmp-\".").arg(key);
    }
    return {};
}

QString StorageDriver::prefixError(const QString& prefix)
{
    return prefix.isEmpty() ? QString() : keyError(prefix);
}

} // namespace NVB::Engine
