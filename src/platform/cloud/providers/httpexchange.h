#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace NVL::Cloud {

// One HTTP request and what came back, as CurlHttp performs it. Header names
// of the answer are lower case; a name may occur more than once.
struct HttpExchange
{
    // Request
    QByteArray method = QByteArrayLiteral("GET");
    QUrl url;
    QList<QPair<QByteArray, QByteArray>> requestHeaders;
    QByteArray requestBody;

    // Answer
    long status = 0;
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;

    // Transport failure (libcurl's code, 0 when the exchange completed) and
    // its text. An HTTP error status is not a transport failure.
    int curlCode = 0;
    QString transportError;
    // The TLS leaf certificate the connection saw (PEM) and why the system's
    // verification refused it; empty when it was accepted without a pin.
    QByteArray peerCertificate;
    QStringList peerCertificateErrors;

    QByteArray header(const QByteArray& lowerName) const;
};

} // namespace NVL::Cloud
