#include "removenbfdatastatus.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<RemoveNbfDataStatus> RemoveNbfDataStatus::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<RemoveNbfDataStatus>::create();
    if (!Json::readUuid(object, QStringLiteral("bunchId"), payload->m_bunchId))
        return {};
    if (!Json::readUuid(object, QStringLiteral("connectionId"), payload->m_connectionId))
        return {};
    if (!Json::readUuid(object, QStringLiteral("generationId"), payload->m_generationId))
        return {};
    if (!Json::readString(object, QStringLiteral("message"), payload->m_message))
        return {};
    if (!Json::readInt(object, QStringLiteral("status"), payload->m_status))
        return {};
    return payload;
}

QByteArray RemoveNbfDataStatus::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("bunchId"), m_bunchId.toString());
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    object.insert(QStringLiteral("generationId"), m_generationId.toString());
    object.insert(QStringLiteral("message"), m_message);
    object.insert(QStringLiteral("status"), m_status);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
