#pragma once

#include <QJsonObject>
#include <QMap>
#include <QVariant>

#include "cloudtype.h"

namespace NVB::Info {

// Turns one form of an account into the other: a cloud configuration (clear
// secrets, cloudconfig.h keys) into the record the engine stores (enciphered
// secrets, storageaccountconfigformat.h keys) and back. This is the one place
// that knows the deliberate differences between the two key tables, so that
// code reading a stored account can hand it to a cloud operation.
class StorageAccountConverter
{
public:
    // The record of a configuration; the type is read from Config::Type. An
    // unknown type gives an empty object and the reason in *error.
    static QJsonObject toRecord(const QMap<QString, QVariant>& config, QString* error = nullptr);
    // The configuration of a stored record, with a new Config::Id. A secret
    // that cannot be deciphered gives an empty map and the reason in *error.
    static QMap<QString, QVariant> toCloudConfig(
        const QJsonObject& record, NVL::Cloud::Type type, QString* error = nullptr);
};

} // namespace NVB::Info
