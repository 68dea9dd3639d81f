#include "synchronizerepositoryerror.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "service/v2/jsonfields.h"

namespace NVB::Common::Communication::V2::Notification {

QSharedPointer<SynchronizeRepositoryError> SynchronizeRepositoryError::from(const QByteArray& bytes)
{
    QJsonObject object;
    if (!Json::parseObject(bytes, object))
        return {};
    auto payload = QSharedPointer<SynchronizeRepositoryError>::create();
    if (!Json::readUuid(object, QStringLiteral("connectionId"), payload->m_connectionId))
        return {};
    if (!Json::readStringList(object, QStringLiteral("errorList"), payload->m_errorList))
        return {};
    if (!Json::readString(object, QStringLiteral("message"), payload->m_message))
        return {};
    return payload;
}

QByteArray SynchronizeRepositoryError::toBytes() const
{
    QJsonObject object;
    object.insert(QStringLiteral("connectionId"), m_connectionId.toString());
    object.insert(QStringLiteral("errorList"), QJsonArray::fromStringList(m_errorList));
    object.insert(QStringLiteral("message"), m_message);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace NVB::Common::Communication::V2::Notification
