#pragma once

#include <QJsonObject>
#include <QString>

namespace NVB::Engine {

// The answer of an engine operation: data on success, else the reason.
struct Outcome
{
    bool ok = true;
    QString error;
    QJsonObject data;

    static Outcome success(const QJsonObject& data = {}) { return Outcome{true, QString(), data}; }
    static Outcome failure(const QString& error) { return Outcome{false, error, QJsonObject()}; }
};

} // namespace NVB::Engine
