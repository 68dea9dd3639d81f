#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// A storage account exactly as the console saved it; `params` is the account
// record with its secrets enciphered.
struct StoredAccount
{
    QUuid id;
    QString profile;
    QString displayName;
    int type = 0;
    QString prefix;
    QJsonObject params;
};

} // namespace NVB::Engine
