#include "webpages.h"

#include <QDateTime>
#include <QJsonObject>

#include "core/providerdefines.h"

namespace NVB::Engine {

namespace {

QString escaped(const QString& text)
{
    return text.toHtmlEscaped();
}

const char Style[] = R"(body{font-family:sans-serif;margin:2em;color:#222}
table{border-collapse:collapse;min-width:40em}th,td{border-bottom:1px solid #ccc;padding:.4em .8em;text-align:left}
th{background:#f0f0f0}form{display:inline;margin:0}.note{color:#a00}header{display:flex;gap:1em;align-items:center}
header h1{flex:1;font-size:1.4em})";

} // namespace

QString WebPages::when(const QString& isoUtc)
{
    const QDateTime time = QDateTime::fromString(isoUtc, Qt::ISODate);
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")) : QStringLiteral("-");
}

QByteArray WebPages::frame(const QString& title, const QString& body, bool loggedIn)
{
    const QString product = escaped(NVB::defines::ProviderDefines::DisplayName());
    const QString logout = loggedIn
        ? QStringLiteral(R"(<form method="post" action="/logout"><button>Log out</button></form>)")
        : QString();
    return QStringLiteral(R"(<!DOCTYPE html><html><head><meta charset="utf-8"><title>%1 - %2</title><style>%3</style>
</head><body><header><h1>%2</h1>%4</header>%5</body></html>)")
        .arg(escaped(title), product, QString::fromLatin1(Style), logout, body)
        .toUtf8();
}

QByteArray WebPages::login(const QString& message)
{
    const QString note
        = message.isEmpty() ? QString() : QStringLiteral("<p class=\"note\">%1</p>").arg(escaped(message));
    return frame(QStringLiteral("Log in"),
        QStringLiteral(R"(<h2>Log in</h2>%1<form method="post" action="/login">
<label>Master password: <input type="password" name="password" autofocus></label> <button>Log in</button></form>)")
            .arg(note),
        false);
}

QByteArray WebPages::plans(const QJsonArray& plans, const QString& message)
{
    QString rows;
    for (const QJsonValue& value : plans) {
        const QJsonObject plan = value.toObject();
        const QString id = plan.value(QStringLiteral("id")).toString();
        const bool running = plan.value(QStringLiteral("state")).toString() == QLatin1String("Running");
        const QString action = running ? QStringLiteral("stop") : QStringLiteral("start");
        rows += QStringLiteral(R"(<tr class="plan" data-id="%1"><td>%2</td><td>%3</td><td>%4</td><td>%5</td><td>%6</td>
<td><form method="post" action="/plans/%1/%7"><button>%8</button></form> <a href="/plans/%1/history">History</a></td></tr>)")
                    .arg(escaped(id), escaped(plan.value(QStringLiteral("name")).toString()),
                        escaped(plan.value(QStringLiteral("state")).toString()),
                        escaped(plan.value(QStringLiteral("lastResultText")).toString()),
                        when(plan.value(QStringLiteral("lastRun")).toString()),
                        when(plan.value(QStringLiteral("nextRun")).toString()), action,
                        running ? QStringLiteral("Stop") : QStringLiteral("Start"));
    }
    if (plans.isEmpty())
        rows = QStringLiteral("<tr><td colspan=\"6\">No plans yet.</td></tr>");
    const QString note
        = message.isEmpty() ? QString() : QStringLiteral("<p class=\"note\">%1</p>").arg(escaped(message));
    return frame(QStringLiteral("Plans"),
        QStringLiteral(R"(<h2>Plans</h2>%1<table id="plans"><tr><th>Plan</th><th>State</th><th>Last result</th>
<th>Last run</th><th>Next run</th><th></th></tr>%2</table>)")
            .arg(note, rows),
        true);
}

QByteArray WebPages::history(const QString& planName, const QJsonArray& runs)
{
    QString rows;
    for (const QJsonValue& value : runs) {
        const QJsonObject run = value.toObject();
        rows += QStringLiteral(
            "<tr class=\"run\"><td>%1</td><td>%2</td><td>%3 s</td><td>%4</td><td>%5</td><td>%6</td></tr>")
                    .arg(when(run.value(QStringLiteral("start")).toString()),
                        escaped(run.value(QStringLiteral("resultText")).toString()))
                    .arg(qint64(run.value(QStringLiteral("duration")).toDouble()))
                    .arg(qint64(run.value(QStringLiteral("files")).toDouble()))
                    .arg(qint64(run.value(QStringLiteral("size")).toDouble()))
                    .arg(escaped(run.value(QStringLiteral("message")).toString()));
    }
    if (runs.isEmpty())
        rows = QStringLiteral("<tr><td colspan=\"6\">The plan has not run yet.</td></tr>");
    return frame(QStringLiteral("History"),
        QStringLiteral(R"(<p><a href="/">All plans</a></p><h2>History of %1</h2><table id="history"><tr><th>Started</th>
<th>Result</th><th>Duration</th><th>Files</th><th>Bytes</th><th>Message</th></tr>%2</table>)")
            .arg(escaped(planName), rows),
        true);
}

QByteArray WebPages::message(const QString& title, const QString& text)
{
    return frame(title, QStringLiteral("<h2>%1</h2><p>%2</p>").arg(escaped(title), escaped(text)), false);
}

} // namespace NVB::Engine
