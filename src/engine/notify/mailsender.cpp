#include "mailsender.h"

#include <cstring>
#include <mutex>

#include <curl/curl.h>

namespace NVB::Engine {

namespace {

struct Upload
{
    const QByteArray* data;
    qsizetype offset = 0;
};

size_t readMessage(char* buffer, size_t size, size_t count, void* user)
{
    auto* upload = static_cast<Upload*>(user);
    const size_t room = size * count;
    const size_t left = size_t(upload->data->size() - upload->offset);
    const size_t chunk = qMin(room, left);
    std::memcpy(buffer, upload->data->constData() + upload->offset, chunk);
    upload->offset += qsizetype(chunk);
    return chunk;
}

QByteArray angle(const QString& address)
{
    return '<' + address.trimmed().toUtf8() + '>';
}

} // namespace

QString MailSender::send(const SmtpSettings& smtp, const QStringList& recipients, const QByteArray& message)
{
    static std::once_flag initialised;
    std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    if (!smtp.isConfigured())
        return QStringLiteral("no SMTP server is set");
    if (recipients.isEmpty())
        return QStringLiteral("no address to send to");

    CURL* curl = curl_easy_init();
    if (!curl)
        return QStringLiteral("the mail library could not start");
    const bool implicitTls = smtp.tls && smtp.port == 465;
    const QByteArray url = QStringLiteral("%1://%2:%3")
                               .arg(implicitTls ? QStringLiteral("smtps") : QStringLiteral("smtp"), smtp.host)
                               .arg(smtp.port)
                               .toUtf8();
    const QByteArray from = angle(smtp.senderAddress());
    curl_slist* rcpt = nullptr;
    QList<QByteArray> kept;
    for (const QString& recipient : recipients) {
        kept << angle(recipient);
        rcpt = curl_slist_append(rcpt, kept.constLast().constData());
    }
    const QByteArray user = smtp.user.toUtf8();
    const QByteArray password = smtp.password.toUtf8();
    char failure[CURL_ERROR_SIZE] = {};
    Upload upload {&message};
    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_MAIL_FROM, from.constData());
    curl_easy_setopt(curl, CURLOPT_MAIL_RCPT, rcpt);
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, readMessage);
    curl_easy_setopt(curl, CURLOPT_READDATA, &upload);
    curl_easy_setopt(curl, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, long(TimeoutSeconds));
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, 20L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, failure);
    if (smtp.tls && !implicitTls)
        curl_easy_setopt(curl, CURLOPT_USE_SSL, long(CURLUSESSL_ALL));
    if (!smtp.user.isEmpty()) {
        curl_easy_setopt(curl, CURLOPT_USERNAME, user.constData());
        curl_easy_setopt(curl, CURLOPT_PASSWORD, password.constData());
    }
    const CURLcode code = curl_easy_perform(curl);
    QString error;
    if (code != CURLE_OK)
        error = QString::fromUtf8(failure[0] ? failure : curl_easy_strerror(code));
    curl_slist_free_all(rcpt);
    curl_easy_cleanup(curl);
    return error;
}

} // namespace NVB::Engine
