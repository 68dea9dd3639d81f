#include "planprogress.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<PlanProgress> PlanProgress::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<PlanProgress>::create();
    if (!Json::readUuid(object, QStringLiteral("planId"), payload->m_planId))
        return {};
    if (!Json::readProgressData(object, QStringLiteral("progressData"), payload->m_progressData))
        return {};
    if (!Json::readProgressItems(object, QStringLiteral("progressItemList"), payload->m_progressItemList))
        return {};
    if (!Json::readInt(object, QStringLiteral("subType"), payload->m_subType))
        return {};
    return payload;
}

QByteArray PlanProgress::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("planId"), m_planId.toString());
    object.insert(QStringLiteral("progressData"), Json::fromProgressData(m_progressData));
    object.insert(QStringLiteral("progressItemList"), Json::fromProgressItems(m_progressItemList));
    object.insert(QStringLiteral("subType"), m_subType);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
