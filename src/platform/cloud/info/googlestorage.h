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

    // The registration and the provider's endpoints. Each may be replaced
    // through the environment (NVB_GOOGLE_CLIENT_ID, NVB_GOOGLE_CLIENT_SECRET,
    // NVB_GOOGLE_AUTH_URL, NVB_GOOGLE_TOKEN_URL, NVB_GOOGLE_STORAGE_URL), so
    // that a build without its own registration, or a test against a local
    // double of the provider, can still sign in.
    static QString clientId();
    static QString clientSecret();
    static QUrl authorizationEndpoint();
    static QUrl tokenEndpoint();
    // The full-control storage scope, and the one for the user's e-mail.
    static QString storageScope();
    static QString emailScope();

    // The JSON API's base ("https://storage.googleapis.com").
    QUrl defaultEndpoint() const;
    // Location code -> (display text, "Multi-region", "Dual-region" or "Region").
    QMap<QString, QPair<QString, QString>> regions() const;
    // (display text, storage class sent for a new bucket).
    QVector<QPair<QString, QString>> storageType() const;
};

} // namespace NVL::Cloud::Info
