#include "addednewplan.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<AddedNewPlan> AddedNewPlan::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<AddedNewPlan>::create();
    if (!Json::readUuid(object, QStringLiteral("planId"), payload->m_planId))
        return {};
    if (!Json::readInt(object, QStringLiteral("subType"), payload->m_subType))
        return {};
    return payload;
}

QByteArray AddedNewPlan::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("planId"), m_planId.toString());
    object.insert(QStringLiteral("subType"), m_subType);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
