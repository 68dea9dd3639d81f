#pragma once

#include <QObject>
#include <QUrl>

class QTcpServer;
class QTcpSocket;

namespace NVB::GUI::Settings::Account {

// The installed application's side of an OAuth 2.0 sign-in in the system
// browser: a one-shot HTTP listener on 127.0.0.1 that the provider redirects
// the browser to with the authorization code, and the PKCE pair (RFC 7636)
// that binds the code to this listener's verifier, so that a code caught by
// anyone else is worthless.
class OAuthLoopback : public QObject
{
    Q_OBJECT

public:
    explicit OAuthLoopback(QObject* parent = nullptr);
    ~OAuthLoopback() override;

    // Listens on a free port; false with the reason in error.
    bool start(QString* error);
    bool isListening() const;

    QString redirectUri() const { return m_redirectUri; }
    QString codeVerifier() const { return m_verifier; }
    // The URL to open in the browser, asking for scopes (space separated).
    QUrl authorizationUrl(const QUrl& endpoint, const QString& clientId, const QString& scopes) const;

signals:
    void codeReceived(const QString& code);
    void failed(const QString& error);

private slots:
    void onNewConnection();

private:
    void onRequest(QTcpSocket* socket);
    static void reply(QTcpSocket* socket, int status, const QString& text);

    QTcpServer* m_server;
    QString m_verifier;
    QString m_state;
    QString m_redirectUri;
};

} // namespace NVB::GUI::Settings::Account
