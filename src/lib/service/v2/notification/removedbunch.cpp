#include "removedbunch.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<RemovedBunch> RemovedBunch::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<RemovedBunch>::create();
    if (!Json::readUuid(object, QStringLiteral("bunchId"), payload->m_bunchId))
        return {};
    if (!Json::readUuid(object, QStringLiteral("connectionId"), payload->m_connectionId))
        return {};
    return payload;
}

QByteArray RemovedBunch::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
