#pragma once

#include <QString>

namespace NVB::defines {

// The web proxy every transfer of the engine goes through, kept in the
// default-settings store under the "Proxy..." keys so that the engine picks a
// change up like any other setting.
class ProxyDefines
{
public:
    struct ProxySettings
    {
        bool enabled = false;
        QString host;
        int port = 0;
        bool useAuthentication = false;
        QString user;
        bool passwordChanged = false;
        // Enciphered with the local cipher; never the plain text.
        QString password;
    };

    static ProxySettings proxySettings();
    // False when the store could not be written.
    static bool setProxySettings(const ProxySettings& settings);
    static bool IsProxyEnabled();
};

} // namespace NVB::defines
