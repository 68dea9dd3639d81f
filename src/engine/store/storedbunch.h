#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// The data of one backup plan on one connection.
struct StoredBunch
{
    QUuid connectionId;
    QUuid id; // the plan's id
    QString displayName;
    int type = 0; // 0 file-level
    QString planXml;
};

} // namespace NVB::Engine
