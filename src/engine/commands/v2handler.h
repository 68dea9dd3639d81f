#pragma once

#include <functional>

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// The answer of a V2 command: its status (2 success, 3 error) and the
// response object or the error text.
struct V2Answer
{
    int status = 2;
    QString error;
    QJsonObject response;

    static V2Answer success(const QJsonObject& response) { return V2Answer{2, QString(), response}; }
    static V2Answer failure(const QString& error) { return V2Answer{3, error, QJsonObject()}; }
};

// A V2 command's handler: the request object in (already checked to read as
// the command's request class), the answer out.
using V2Handler = std::function<V2Answer(const QJsonObject& request)>;
using V2Handlers = QHash<QUuid, V2Handler>;

} // namespace NVB::Engine
