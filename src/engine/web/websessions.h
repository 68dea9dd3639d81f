#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

namespace NVB::Engine {

// Who is logged in to the web interface. A session is a random token in a
// cookie that lapses after a while without use; a ticket is a one-time,
// short-lived token that a program holding the password hands to a browser
// (GET /login?ticket=...) so that the browser gets a session of its own.
class WebSessions
{
public:
    static constexpr qint64 IdleSeconds = 30 * 60;
    static constexpr qint64 TicketSeconds = 60;

    QString open();
    QString openTicket();
    // The session a ticket is exchanged for, or empty when the ticket is
    // unknown, used or late.
    QString redeem(const QString& ticket);
    bool isValid(const QString& token);
    void close(const QString& token);
    // Everyone out: the master password or the ports changed.
    void clear();

private:
    static QString randomToken();
    void dropLapsed();

    QHash<QString, QDateTime> m_sessions; // token: last use, UTC
    QHash<QString, QDateTime> m_tickets; // token: made, UTC
};

} // namespace NVB::Engine
