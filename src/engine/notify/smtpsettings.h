#pragma once

#include <memory>

#include <QString>

namespace NVB {
class DefaultSettings;
}

namespace NVB::Engine {

// The mail server notifications go through, from the settings "SMTP host",
// "SMTP port", "SMTP TLS", "SMTP user", "SMTP password" (enciphered with the
// local cipher) and "SMTP sender".
struct SmtpSettings
{
    QString host;
    int port = 25;
    // Port 465 speaks TLS from the start; any other port upgrades with
    // STARTTLS and refuses to go on in clear text.
    bool tls = false;
    QString user;
    QString password;
    QString sender;

    // The settings as the file holds them now: the console writes them while
    // the engine runs, so a mail reads them afresh rather than keep what the
    // engine saw at its start.
    static std::unique_ptr<NVB::DefaultSettings> current();

    // With `error` set when a value cannot be used (a password that does
    // not decipher, a port out of range).
    static SmtpSettings fromSettings(QString* error);
    bool isConfigured() const { return !host.isEmpty(); }
    // The sender, or "nvbengine@<host name>".
    QString senderAddress() const;
};

} // namespace NVB::Engine
