#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

namespace NVB::Engine {

// One request of the web interface as the server hands it over, and the
// answer to it. Header names are as the client sent them; lookups ignore case.
struct WebRequest
{
    QByteArray method;
    QString path;
    QMap<QString, QString> query;
    QMap<QByteArray, QByteArray> headers; // lower-case names
    QByteArray body;
    bool secure = false; // came over HTTPS
    bool loopback = false; // from this machine

    QByteArray header(const QByteArray& name) const { return headers.value(name.toLower()); }
};

struct WebResponse
{
    int status = 200;
    QByteArray contentType = QByteArrayLiteral("text/html; charset=utf-8");
    QByteArray body;
    QList<QPair<QByteArray, QByteArray>> headers;
};

} // namespace NVB::Engine
