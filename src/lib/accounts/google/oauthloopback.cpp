#include "oauthloopback.h"

#include <QCryptographicHash>
#include <QHostAddress>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrlQuery>

namespace NVB::GUI::Settings::Account {

namespace {

// A request line and headers are small; anything larger is not the redirect.
constexpr int MaxRequest = 16 * 1024;

QString randomToken()
{
    QByteArray bytes(32, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
    return QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

} // namespace

OAuthLoopback::OAuthLoopback(QObject* parent)
    : QObject(parent)
    , m_server(new QTcpServer(this))
    , m_verifier(randomToken())
    , m_state(randomToken())
{
    connect(m_server, &QTcpServer::newConnection, this, &OAuthLoopback::onNewConnection);
}

OAuthLoopback::~OAuthLoopback() = default;

bool OAuthLoopback::start(QString* error)
{
    if (m_server->isListening())
        return true;
    if (!m_server->listen(QHostAddress::LocalHost, 0)) {
        *error = tr("Cannot wait for the browser's answer: %1").arg(m_server->errorString());
        return false;
    }
    // Kept apart from the server: the token endpoint wants it back after the
    // listener has closed.
    m_redirectUri = QStringLiteral("http://127.0.0.1:%1/").arg(m_server->serverPort());
    return true;
}

bool OAuthLoopback::isListening() const
{
    return m_server->isListening();
}

QUrl OAuthLoopback::authorizationUrl(const QUrl& endpoint, const QString& clientId, const QString& scopes) const
{
    const QByteArray challenge = QCryptographicHash::hash(m_verifier.toLatin1(), QCryptographicHash::Sha256)
                                     .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    QUrlQuery query;
    const QList<QPair<QString, QString>> items {{QStringLiteral("client_id"), clientId},
        {QStringLiteral("redirect_uri"), redirectUri()}, {QStringLiteral("response_type"), QStringLiteral("code")},
        {QStringLiteral("scope"), scopes}, {QStringLiteral("code_challenge"), QString::fromLatin1(challenge)},
        {QStringLiteral("code_challenge_method"), QStringLiteral("S256")}, {QStringLiteral("state"), m_state},
        {QStringLiteral("access_type"), QStringLiteral("offline")}};
    for (const auto& item : items)
        query.addQueryItem(item.first, QString::fromLatin1(QUrl::toPercentEncoding(item.second)));
    QUrl url = endpoint;
    url.setQuery(query);
    return url;
}

void OAuthLoopback::onNewConnection()
{
    while (QTcpSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onRequest(socket); });
    }
}

void OAuthLoopback::onRequest(QTcpSocket* socket)
{
    QByteArray buffer = socket->property("request").toByteArray() + socket->readAll();
    if (buffer.size() > MaxRequest) {
        socket->abort();
        return;
    }
    if (!buffer.contains("\r\n\r\n")) {
        socket->setProperty("request", buffer);
        return;
    }
    const QList<QByteArray> line = buffer.left(buffer.indexOf("\r\n")).split(' ');
    const QUrl target(QString::fromLatin1(line.value(1)));
    const QUrlQuery query(target);
    // Browsers also ask for /favicon.ico and the like; and a redirect that
    // does not carry our state was not started by us.
    if (line.value(0) != "GET" || target.path() != QLatin1String("/")
        || query.queryItemValue(QStringLiteral("state"), QUrl::FullyDecoded) != m_state) {
        reply(socket, 404, tr("Not found"));
        return;
    }
    const QString code = query.queryItemValue(QStringLiteral("code"), QUrl::FullyDecoded);
    if (code.isEmpty()) {
        const QString error = query.queryItemValue(QStringLiteral("error"), QUrl::FullyDecoded);
        reply(socket, 400, tr("Sign-in was not completed (%1). You can close this window.").arg(error));
        emit failed(tr("The browser's sign-in was not completed: %1").arg(error.isEmpty() ? tr("no code") : error));
        return;
    }
    reply(socket, 200, tr("Sign-in is complete. You can close this window and return to the program."));
    m_server->close();
    emit codeReceived(code);
}

void OAuthLoopback::reply(QTcpSocket* socket, int status, const QString& text)
{
    const QByteArray body = "<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body><p>"
        + text.toHtmlEscaped().toUtf8() + "</p></body></html>";
    const QByteArray reason = status == 200 ? "OK" : status == 400 ? "Bad Request" : "Not Found";
    socket->write("HTTP/1.1 " + QByteArray::number(status) + ' ' + reason
        + "\r\nContent-Type: text/html; charset=utf-8\r\nConnection: close\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    socket->disconnectFromHost();
}

} // namespace NVB::GUI::Settings::Account
