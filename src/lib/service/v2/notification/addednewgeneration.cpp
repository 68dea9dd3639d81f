#include "addednewgeneration.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<AddedNewGeneration> AddedNewGeneration::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<AddedNewGeneration>::create();
    if (!Json::readUuid(object, QStringLiteral("bunchId"), payload->m_bunchId))
        return {};
    if (!Json::readUuid(object, QStringLiteral("connectionId"), payload->m_connectionId))
        return {};
    if (!Json::readUuid(object, QStringLiteral("generationId"), payload->m_generationId))
        return {};
    return payload;
}

QByteArray AddedNewGeneration::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    object.insert(QStringLiteral("generationId"), m_generationId.toString());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
