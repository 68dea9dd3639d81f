#pragma once

#include <functional>

#include <QDateTime>
#include <QJsonArray>
#include <QUuid>

#include "webexchange.h"
#include "websessions.h"

namespace NVB::Engine {

class Engine;

// What the web interface answers, on either port: the pages, the JSON
// endpoints behind them, and who may see them. Every request but the login
// needs a session; the master password opens one.
class WebInterface
{
public:
    // `masterPassword` gives the stored (enciphered) master password.
    WebInterface(Engine* engine, std::function<QString()> masterPassword);

    // `httpsPort` is 0 while HTTPS is off.
    WebResponse answer(const WebRequest& request, quint16 httpsPort);
    WebSessions& sessions() { return m_sessions; }

    static constexpr char Cookie[] = "nvbsession";
    // Wrong passwords in a row before logins pause.
    static constexpr int FailuresBeforePause = 5;
    static constexpr int PauseSeconds = 30;

private:
    WebResponse route(const WebRequest& request, const QString& session);
    WebResponse login(const WebRequest& request, bool api);
    WebResponse planAction(const QUuid& id, const QString& action, bool api);
    QJsonArray plans() const;
    QJsonArray history(const QUuid& id) const;
    bool passwordMatches(const QString& given) const;
    static QString sessionOf(const WebRequest& request);
    static QString formValue(const WebRequest& request, const QString& name);
    static WebResponse redirect(const QByteArray& location);
    static WebResponse json(int status, const QJsonObject& object);
    static WebResponse withCookie(WebResponse response, const QString& session, bool secure);

    Engine* m_engine;
    std::function<QString()> m_masterPassword;
    WebSessions m_sessions;
    int m_failures = 0;
    QDateTime m_pausedUntil;
};

} // namespace NVB::Engine
