#include "bunch.h"

#include <limits>

#include "core/nvldebug.h"
#include "records/plan/factory.h"
#include "records/recordjson.h"

namespace NVB::Info::Repository {

namespace {
const QString Record = QStringLiteral("bunch");
}

QJsonObject Bunch::toJson() const
{
    return {{QStringLiteral("id"), RecordJson::fromUuid(m_id)},
        {QStringLiteral("connectionId"), RecordJson::fromUuid(m_connectionId)},
        {QStringLiteral("displayName"), m_displayName}, {QStringLiteral("type"), int(m_type)},
        {QStringLiteral("backupPlan"), m_backupPlan ? QJsonValue(m_backupPlan->toXml()) : QJsonValue()}};
}

QSharedPointer<Bunch> Bunch::fromJson(const QJsonObject& object)
{
    try {
        auto bunch = QSharedPointer<Bunch>::create();
        bunch->m_id = RecordJson::toUuid(object, QStringLiteral("id"), Record);
        bunch->m_connectionId = RecordJson::toUuid(object, QStringLiteral("connectionId"), Record);
        bunch->m_displayName = RecordJson::toString(object, QStringLiteral("displayName"), Record);
        bunch->m_type = NVL::Archive::Type(
            RecordJson::toInt(object, QStringLiteral("type"), Record, 0, std::numeric_limits<int>::max()));
        const QJsonValue plan = object.value(QStringLiteral("backupPlan"));
        if (plan.isString()) {
            bunch->m_backupPlan
                = NVB::Info::Plan::Factory::create(plan.toString()).dynamicCast<NVB::Info::Plan::Backup>();
            if (!bunch->m_backupPlan)
                throw QStringLiteral("Key \"backupPlan\" of bunch is not a backup plan");
        } else if (!plan.isNull() && !plan.isUndefined()) {
            throw QStringLiteral("Key \"backupPlan\" of bunch is neither plan XML nor null");
        }
        return bunch;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

} // namespace NVB::Info::Repository
