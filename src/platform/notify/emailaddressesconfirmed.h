#pragma once

#include <QString>

namespace NVB::SOAP {

// Asks the address confirmation service whether notification mail may go to
// an address. The service is a plain HTTP endpoint named by the setting
// "Notification confirmation URL": it takes a POST of
// {"email": ..., "userName": ...} and answers 200 with {"confirmed": bool};
// an address it does not know yet is sent a confirmation mail by it and
// answered as not confirmed. Without a URL (a standalone installation that
// mails through its own server) every address counts as confirmed.
class EmailAddressesConfirmed
{
public:
    static constexpr char UrlKey[] = "Notification confirmation URL";
    static constexpr int TimeoutMs = 15000;

    // Blocks until the service answers or the time is up. True when the
    // address is confirmed; see responseStatus() for whether it was reached.
    bool isAllowed(const QString& email, const QString& userName);

    // The HTTP status of the answer; 200 means the service was reached and
    // answered readably. 0 when it could not be reached, or answered 200 with
    // something that isn't the expected JSON.
    int responseStatus() const { return m_status; }
    QString errorString() const { return m_error; }

private:
    int m_status = 0;
    QString m_error;
};

} // namespace NVB::SOAP
