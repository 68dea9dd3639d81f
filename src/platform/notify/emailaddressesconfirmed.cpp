#include "emailaddressesconfirmed.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

#include "stores/defaultsettings.h"

namespace NVB::SOAP {

bool EmailAddressesConfirmed::isAllowed(const QString& email, const QString& userName)
{
    m_status = 0;
    m_error.clear();
    const NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
    const QString address = settings ? settings->value(QLatin1String(UrlKey)).trimmed() : QString();
    if (address.isEmpty()) {
        m_status = 200;
        return true;
    }
    const QUrl url(address);
    if (!url.isValid() || (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))) {
        m_error = QStringLiteral("The confirmation service address \"%1\" is not an HTTP address").arg(address);
        return false;
    }
    QNetworkAccessManager network;
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const QByteArray body
        = QJsonDocument(QJsonObject {{QStringLiteral("email"), email}, {QStringLiteral("userName"), userName}})
              .toJson(QJsonDocument::Compact);
    QNetworkReply* reply = network.post(request, body);
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(TimeoutMs);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (!reply->isFinished()) {
        reply->abort();
        m_error = QStringLiteral("The confirmation service did not answer in time");
        reply->deleteLater();
        return false;
    }
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray answer = reply->readAll();
    if (status == 0)
        m_error = reply->errorString();
    reply->deleteLater();
    if (status != 200) {
        m_status = status;
        if (m_error.isEmpty())
            m_error = QStringLiteral("The confirmation service answered %1").arg(status);
        return false;
    }
    QJsonParseError parse {};
    const QJsonDocument document = QJsonDocument::fromJson(answer, &parse);
    if (!document.isObject() || !document.object().value(QStringLiteral("confirmed")).isBool()) {
        m_error = QStringLiteral("The confirmation service's answer is not understood");
        return false;
    }
    m_status = 200;
    return document.object().value(QStringLiteral("confirmed")).toBool();
}

} // namespace NVB::SOAP
