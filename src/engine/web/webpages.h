#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QString>

namespace NVB::Engine {

// The HTML of the web interface. Pages work without scripts: every action
// is a form, so any browser (and a headless one) can use them.
class WebPages
{
public:
    static QByteArray login(const QString& message);
    // `plans` as the JSON endpoint gives them.
    static QByteArray plans(const QJsonArray& plans, const QString& message);
    static QByteArray history(const QString& planName, const QJsonArray& runs);
    static QByteArray message(const QString& title, const QString& text);

private:
    static QByteArray frame(const QString& title, const QString& body, bool loggedIn);
    static QString when(const QString& isoUtc);
};

} // namespace NVB::Engine
