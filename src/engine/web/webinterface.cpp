#include "webinterface.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>

#include "core/engine.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "store/enginestore.h"
#include "webpages.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;
using NVB::Info::Plan::PlanStatus;

namespace {

constexpr int RecentRuns = 20;

QString isoUtc(const QDateTime& time)
{
    return time.isValid() ? time.toUTC().toString(Qt::ISODate) : QString();
}

QString stateText(int status)
{
    switch (status) {
    case PlanStatus::Running:
        return QStringLiteral("Running");
    case PlanStatus::Stopping:
        return QStringLiteral("Stopping");
    case PlanStatus::Disabled:
        return QStringLiteral("Disabled");
    default:
        return QStringLiteral("Idle");
    }
}

WebResponse html(int status, const QByteArray& body)
{
    WebResponse response;
    response.status = status;
    response.body = body;
    return response;
}

} // namespace

WebInterface::WebInterface(Engine* engine, std::function<QString()> masterPassword)
    : m_engine(engine)
    , m_masterPassword(std::move(masterPassword))
{ }

WebResponse WebInterface::answer(const WebRequest& request, quint16 httpsPort)
{
    if (!request.secure && !request.loopback) {
        // Passwords never cross the network in clear: remote browsers are
        // sent to HTTPS, or turned away while it is off.
        if (httpsPort == 0) {
            return html(403,
                WebPages::message(QStringLiteral("HTTPS only"),
                    QStringLiteral("Over plain HTTP the web interface serves this computer only. Turn on HTTPS to "
                                   "reach it from elsewhere.")));
        }
        QString host = QString::fromUtf8(request.header("Host"));
        if (host.startsWith(QLatin1Char('[')))
            host = host.left(host.indexOf(QLatin1Char(']')) + 1);
        else
            host = host.section(QLatin1Char(':'), 0, 0);
        if (host.isEmpty())
            host = QStringLiteral("localhost");
        return redirect(QStringLiteral("https://%1:%2%3").arg(host).arg(httpsPort).arg(request.path).toUtf8());
    }
    return route(request, sessionOf(request));
}

WebResponse WebInterface::route(const WebRequest& request, const QString& session)
{
    const QStringList parts = request.path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const bool api = !parts.isEmpty() && parts.first() == QLatin1String("api");
    const QStringList rest = api ? QStringList(parts.mid(1)) : parts;
    const bool post = request.method == "POST";
    const bool get = request.method == "GET" || request.method == "HEAD";

    if (rest.value(0) == QLatin1String("login")) {
        if (get && request.query.contains(QStringLiteral("ticket"))) {
            const QString opened = m_sessions.redeem(request.query.value(QStringLiteral("ticket")));
            if (opened.isEmpty())
                return html(403, WebPages::login(QStringLiteral("The login link is used or too old. Log in again.")));
            return withCookie(redirect("/"), opened, request.secure);
        }
        if (post)
            return login(request, api);
        if (get && !api)
            return html(200, WebPages::login(QString()));
    }

    if (!m_sessions.isValid(session)) {
        if (api)
            return json(401, {{QStringLiteral("error"), QStringLiteral("Log in first")}});
        return redirect("/login");
    }

    if (rest.value(0) == QLatin1String("logout") && post) {
        m_sessions.close(session);
        return api ? json(200, {{QStringLiteral("ok"), true}}) : redirect("/login");
    }
    if (rest.isEmpty() && get && !api)
        return html(200, WebPages::plans(plans(), request.query.value(QStringLiteral("message"))));
    if (rest.value(0) == QLatin1String("plans")) {
        if (rest.size() == 1 && get && api)
            return json(200, {{QStringLiteral("plans"), plans()}});
        const QUuid id(rest.value(1));
        const auto info = id.isNull() ? std::nullopt : m_engine->planInfo(id);
        if (!info) {
            const QString text = QStringLiteral("There is no plan \"%1\"").arg(rest.value(1));
            return api ? json(404, {{QStringLiteral("error"), text}})
                       : html(404, WebPages::message(QStringLiteral("Not found"), text));
        }
        if (rest.size() == 3 && rest.at(2) == QLatin1String("history") && get) {
            if (api)
                return json(200, {{QStringLiteral("runs"), history(id)}});
            return html(200, WebPages::history(info->value(QStringLiteral("Name")).toString(), history(id)));
        }
        if (rest.size() == 3 && post && (rest.at(2) == QLatin1String("start") || rest.at(2) == QLatin1String("stop")))
            return planAction(id, rest.at(2), api);
    }
    const QString text = QStringLiteral("Nothing is at %1 %2").arg(QString::fromLatin1(request.method), request.path);
    return api ? json(404, {{QStringLiteral("error"), text}})
               : html(404, WebPages::message(QStringLiteral("Not found"), text));
}

WebResponse WebInterface::login(const WebRequest& request, bool api)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (m_pausedUntil.isValid() && now < m_pausedUntil) {
        const QString text
            = QStringLiteral("Too many wrong passwords. Try again in %1 seconds.").arg(now.secsTo(m_pausedUntil) + 1);
        return api ? json(429, {{QStringLiteral("error"), text}}) : html(429, WebPages::login(text));
    }
    if (!passwordMatches(formValue(request, QStringLiteral("password")))) {
        if (++m_failures >= FailuresBeforePause) {
            m_failures = 0;
            m_pausedUntil = now.addSecs(PauseSeconds);
        }
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Web access: a wrong master password was given");
        const QString text = QStringLiteral("The password is wrong.");
        return api ? json(401, {{QStringLiteral("error"), text}}) : html(401, WebPages::login(text));
    }
    m_failures = 0;
    const QString session = m_sessions.open();
    if (!api)
        return withCookie(redirect("/"), session, request.secure);
    return withCookie(json(200, {{QStringLiteral("ticket"), m_sessions.openTicket()}}), session, request.secure);
}

WebResponse WebInterface::planAction(const QUuid& id, const QString& action, bool api)
{
    const Outcome outcome = action == QLatin1String("start") ? m_engine->startPlan(id, false) : m_engine->stopPlan(id);
    if (api) {
        return outcome.ok ? json(200, {{QStringLiteral("ok"), true}})
                          : json(409, {{QStringLiteral("error"), outcome.error}});
    }
    if (outcome.ok)
        return redirect("/");
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("message"), outcome.error);
    return redirect("/?" + query.toString(QUrl::FullyEncoded).toUtf8());
}

QJsonArray WebInterface::plans() const
{
    QJsonArray list;
    for (const QJsonValue& value : m_engine->planList()) {
        const QJsonObject info = value.toObject();
        const int result = info.value(QStringLiteral("LastRunStatus")).toInt(-1);
        list.append(QJsonObject {
            {QStringLiteral("id"), QUuid(info.value(QStringLiteral("ID")).toString()).toString(QUuid::WithoutBraces)},
            {QStringLiteral("name"), info.value(QStringLiteral("Name"))},
            {QStringLiteral("state"), stateText(info.value(QStringLiteral("Status")).toInt())},
            {QStringLiteral("lastResult"), result},
            {QStringLiteral("lastResultText"),
                result < 0 ? QStringLiteral("Never run") : PlanResult(result).displayName()},
            {QStringLiteral("lastRun"), info.value(QStringLiteral("LastRunTime"))},
            {QStringLiteral("lastMessage"), info.value(QStringLiteral("LastRunMessage"))},
            {QStringLiteral("nextRun"), info.value(QStringLiteral("NextRun"))}});
    }
    return list;
}

QJsonArray WebInterface::history(const QUuid& id) const
{
    HistoryQuery query;
    query.planId = id;
    query.limit = RecentRuns;
    QJsonArray runs;
    for (const RunRecord& run : m_engine->store()->runs(query)) {
        runs.append(
            QJsonObject {{QStringLiteral("start"), isoUtc(run.startUtc)}, {QStringLiteral("result"), run.result},
                {QStringLiteral("resultText"), PlanResult(run.result).displayName()},
                {QStringLiteral("duration"), double(run.durationSeconds)}, {QStringLiteral("size"), double(run.size)},
                {QStringLiteral("files"), double(run.fileCount)}, {QStringLiteral("message"), run.errorMessage}});
    }
    return runs;
}

bool WebInterface::passwordMatches(const QString& given) const
{
    const QString stored = m_masterPassword();
    return !stored.isEmpty() && !given.isEmpty() && SHARED::cryptNS::encrypt_local_password(given) == stored;
}

QString WebInterface::sessionOf(const WebRequest& request)
{
    const QList<QByteArray> cookies = request.header("Cookie").split(';');
    for (const QByteArray& cookie : cookies) {
        const QByteArray trimmed = cookie.trimmed();
        if (trimmed.startsWith(QByteArray(Cookie) + '='))
            return QString::fromLatin1(trimmed.mid(int(sizeof Cookie)));
    }
    return {};
}

QString WebInterface::formValue(const WebRequest& request, const QString& name)
{
    if (request.header("Content-Type").startsWith("application/json"))
        return QJsonDocument::fromJson(request.body).object().value(name).toString();
    QByteArray body = request.body;
    body.replace('+', ' ');
    return QUrlQuery(QString::fromUtf8(body)).queryItemValue(name, QUrl::FullyDecoded);
}

WebResponse WebInterface::redirect(const QByteArray& location)
{
    WebResponse response;
    response.status = 303;
    response.headers.append({QByteArrayLiteral("Location"), location});
    return response;
}

WebResponse WebInterface::json(int status, const QJsonObject& object)
{
    WebResponse response;
    response.status = status;
    response.contentType = QByteArrayLiteral("application/json");
    response.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return response;
}

WebResponse WebInterface::withCookie(WebResponse response, const QString& session, bool secure)
{
    QByteArray cookie = QByteArray(Cookie) + '=' + session.toLatin1() + "; Path=/; HttpOnly; SameSite=Strict";
    if (secure)
        cookie += "; Secure";
    response.headers.append({QByteArrayLiteral("Set-Cookie"), cookie});
    return response;
}

} // namespace NVB::Engine
