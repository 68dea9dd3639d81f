#pragma once

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

// The certificate of the web interface's HTTPS port: made once, self-signed,
// and kept beside the store so that a browser that was told to trust it
// keeps seeing the same one.
class WebCertificate
{
public:
    // Reads "<folder>/web-certificate.pem" and "<folder>/web-key.pem", or
    // makes them when either is missing. The key is readable by the owner only.
    static bool ensure(const QString& folder, QByteArray* certificatePem, QByteArray* keyPem, QString* error);

private:
    static bool make(QByteArray* certificatePem, QByteArray* keyPem, QString* error);
};

} // namespace NVB::Engine
