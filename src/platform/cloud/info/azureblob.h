#pragma once

#include <QPair>
#include <QUrl>
#include <QVector>

#include "base.h"

namespace NVL::Cloud::Info {

class AzureBlob : public Base
{
public:
    AzureBlob();

    QUrl defaultEndpoint() const;
    // (display text, the Config::AzureBlob::AccountTypes::Value literal).
    QVector<QPair<QString, QString>> accountTypes() const;
    // (display text, the access level sent for a new container).
    QVector<QPair<QString, QString>> accessType() const;
};

} // namespace NVL::Cloud::Info
