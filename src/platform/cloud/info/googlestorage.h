#pragma once

#include <QMap>
#include <QPair>
#include <QUrl>
#include <QVector>

#include "base.h"

namespace NVL::Cloud::Info {

class GoogleStorage : public Base
{
public:
    // The OAuth client id of this program's registration for installed
    // applications, given at build time (NVB_GOOGLE_CLIENT_ID); empty when the
    // build has none, and then that way of signing in cannot work.
    static const QString ClientID;

    GoogleStorage();

    QUrl defaultEndpoint() const;
    // Location code -> (display text, "Multi-region", "Dual-region" or "Region").
    QMap<QString, QPair<QString, QString>> regions() const;
    // (display text, storage class sent for a new bucket).
    QVector<QPair<QString, QString>> storageType() const;
};

} // namespace NVL::Cloud::Info
