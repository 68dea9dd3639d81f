#include "storage/generationstatusicon.h"

#include <QPainter>
#include <QPixmap>

#include "app/icons/iconmanager.h"

namespace NVB::GUI {

QIcon GenerationStatusIcon::icon(
    NVL::Archive::DeepSyncType deepSync, bool encrypted, NVB::Info::Repository::Generation::Status status, int size)
{
    using NVB::Info::Repository::Generation;
    QIcon base;
    if (status == Generation::Error)
        base = IconManager::icon(IconManager::Error);
    else if (status == Generation::Warning || deepSync == NVL::Archive::DeepSyncNeeded)
        base = IconManager::icon(IconManager::Warning);
    else
        base = IconManager::resource(QStringLiteral("generation.svg"));
    if (!encrypted)
        return base;
    // The lock sits in the lower right quarter so the state stays readable.
    QPixmap pixmap = base.pixmap(size, size);
    QPainter painter(&pixmap);
    const int half = size / 2;
    painter.drawPixmap(size - half, size - half, IconManager::icon(IconManager::EncryptionLock).pixmap(half, half));
    painter.end();
    return QIcon(pixmap);
}

} // namespace NVB::GUI
