#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

#include "cloud/operationresult.h"
#include "httpexchange.h"

namespace NVL::Cloud {

// The one table that turns what an object store answered (a transport
// failure, or a provider's error code and HTTP status) into an operation's
// error code and the text a user reads. Every HTTP client goes through it so
// that the same fault reads the same for every provider.
class ProviderErrors
{
public:
    enum class Protocol { S3, Swift, Azure, B2, Google };

    // A failed transfer: unknown host 1, refused connection 2, time-out 3,
    // untrusted certificate 5 (the leaf that connection saw goes into the
    // result's configuration, for the trust dialog), cancelled 12.
    static OperationResult transport(
        const HttpExchange& exchange, const QMap<QString, QVariant>& config, int timeoutSeconds);
    // An error answer: the provider's own code (S3's <Code>, Azure's
    // x-ms-error-code, B2's "code") looked up first, then the HTTP status.
    // subject names the bucket or container in the text.
    static OperationResult answer(Protocol protocol, long status, const QString& providerCode,
        const QString& providerMessage, const QString& subject);
};

} // namespace NVL::Cloud
