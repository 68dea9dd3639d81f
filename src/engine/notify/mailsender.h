#pragma once

#include <QByteArray>
#include <QStringList>

#include "smtpsettings.h"

namespace NVB::Engine {

// Hands one finished message to the SMTP server, through libcurl.
class MailSender
{
public:
    static constexpr int TimeoutSeconds = 60;

    // Empty when the server took the message, else why not.
    static QString send(const SmtpSettings& smtp, const QStringList& recipients, const QByteArray& message);
};

} // namespace NVB::Engine
