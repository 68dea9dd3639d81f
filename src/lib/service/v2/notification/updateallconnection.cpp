#include "updateallconnection.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<UpdateAllConnection> UpdateAllConnection::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    Q_UNUSED(object)
    return QSharedPointer<UpdateAllConnection>::create();
}

QByteArray UpdateAllConnection::toBytes() const
{
    return QJsonDocument(QJsonObject()).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
