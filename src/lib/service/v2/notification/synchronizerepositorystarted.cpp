#include "synchronizerepositorystarted.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<SynchronizeRepositoryStarted> SynchronizeRepositoryStarted::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<SynchronizeRepositoryStarted>::create();
    if (!Json::readUuid(object, QStringLiteral("connectionId"), payload->m_connectionId))
        return {};
    return payload;
}

QByteArray SynchronizeRepositoryStarted::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
