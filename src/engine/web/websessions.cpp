#include "websessions.h"

#include <QRandomGenerator>

namespace NVB::Engine {

QString WebSessions::randomToken()
{
    quint32 words[8];
    QRandomGenerator::system()->fillRange(words);
    return QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(words), sizeof words)
                                   .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

void WebSessions::dropLapsed()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (auto it = m_sessions.begin(); it != m_sessions.end();)
        it = it.value().secsTo(now) > IdleSeconds ? m_sessions.erase(it) : std::next(it);
    for (auto it = m_tickets.begin(); it != m_tickets.end();)
        it = it.value().secsTo(now) > TicketSeconds ? m_tickets.erase(it) : std::next(it);
}

QString WebSessions::open()
{
    dropLapsed();
    const QString token = randomToken();
    m_sessions.insert(token, QDateTime::currentDateTimeUtc());
    return token;
}

QString WebSessions::openTicket()
{
    dropLapsed();
    const QString token = randomToken();
    m_tickets.insert(token, QDateTime::currentDateTimeUtc());
    return token;
}

QString WebSessions::redeem(const QString& ticket)
{
    dropLapsed();
    if (ticket.isEmpty() || !m_tickets.remove(ticket))
        return {};
    return open();
}

bool WebSessions::isValid(const QString& token)
{
    dropLapsed();
    const auto it = m_sessions.find(token);
    if (token.isEmpty() || it == m_sessions.end())
        return false;
    it.value() = QDateTime::currentDateTimeUtc();
    return true;
}

void WebSessions::close(const QString& token)
{
    m_sessions.remove(token);
}

void WebSessions::clear()
{
    m_sessions.clear();
    m_tickets.clear();
}

} // namespace NVB::Engine
