#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include "operationerror.h"

namespace NVL::Cloud {

// What a provider's worker hands back to the operation on its own thread.
struct OperationResult
{
    int errorCode = OperationError::NoError;
    QString errorMessage;
    QJsonArray data;
    // The configuration as the worker completed it; empty leaves it unchanged.
    QMap<QString, QVariant> config;
    // Listings: where the next page starts; empty on the last page.
    QString marker;
    // Operations whose answer is a document (lifecycle policies): its bytes.
    QByteArray payload;

    bool isError() const { return errorCode != OperationError::NoError; }

    static OperationResult failure(int code, const QString& message);
};

} // namespace NVL::Cloud
