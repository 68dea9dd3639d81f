#include "updateplan.h"

#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<UpdatePlan> UpdatePlan::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<UpdatePlan>::create();
    if (!Json::readUuid(object, QStringLiteral("planId"), payload->m_planId))
        return {};
    return payload;
}

QByteArray UpdatePlan::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("planId"), m_planId.toString());
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
