#include "updatebunch.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<UpdateBunch> UpdateBunch::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<UpdateBunch>::create();
    if (!Json::readUuid(object, QStringLiteral("bunchId"), payload->m_bunchId))
        return {};
    if (!Json::readUuid(object, QStringLiteral("connectionId"), payload->m_connectionId))
        return {};
    return payload;
}

QByteArray UpdateBunch::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
