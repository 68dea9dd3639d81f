#include "smtpsettings.h"

#include <QSysInfo>

#include "crypt/cryptns.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

std::unique_ptr<NVB::DefaultSettings> SmtpSettings::current()
{
    const NVB::DefaultSettings* shared = NVB::DefaultSettings::instance();
    if (!shared)
        return {};
    return std::make_unique<NVB::DefaultSettings>(shared->filePath(), NVB::DefaultSettings::defaultValues());
}

SmtpSettings SmtpSettings::fromSettings(QString* error)
{
    SmtpSettings smtp;
    const std::unique_ptr<NVB::DefaultSettings> settings = current();
    if (!settings)
        return smtp;
    smtp.host = settings->value(QStringLiteral("SMTP host")).trimmed();
    bool ok = false;
    const int port = settings->value(QStringLiteral("SMTP port")).toInt(&ok);
    if (ok && port > 0 && port < 65536)
        smtp.port = port;
    else if (!settings->value(QStringLiteral("SMTP port")).isEmpty())
        *error = QStringLiteral("The SMTP port \"%1\" is not a port number")
                     .arg(settings->value(QStringLiteral("SMTP port")));
    smtp.tls = settings->value(QStringLiteral("SMTP TLS")) == QLatin1String("true");
    smtp.user = settings->value(QStringLiteral("SMTP user"));
    smtp.sender = settings->value(QStringLiteral("SMTP sender")).trimmed();
    const QString enciphered = settings->value(QStringLiteral("SMTP password"));
    if (!enciphered.isEmpty()) {
        try {
            smtp.password = SHARED::cryptNS::decrypt_local_password(enciphered);
        } catch (const QString& reason) {
            *error = QStringLiteral("The SMTP password cannot be deciphered: %1").arg(reason);
        }
    }
    return smtp;
}

QString SmtpSettings::senderAddress() const
{
    return sender.isEmpty() ? QStringLiteral("nvbengine@%1").arg(QSysInfo::machineHostName()) : sender;
}

} // namespace NVB::Engine
