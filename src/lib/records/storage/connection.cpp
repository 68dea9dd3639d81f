#include "connection.h"

#include "core/nvldebug.h"
#include "records/recordjson.h"

namespace NVB::Info::Storage {

namespace {
const QString Record = QStringLiteral("connection");
// The highest provider value of the account types.
constexpr int LastProviderType = 38;
} // namespace

QJsonObject Connection::toJson() const
{
    return {{QStringLiteral("id"), RecordJson::fromUuid(m_id)}, {QStringLiteral("displayName"), m_displayName},
        {QStringLiteral("type"), m_type}, {QStringLiteral("syncInProgress"), m_syncInProgress}};
}

QSharedPointer<Connection> Connection::fromJson(const QJsonObject& object)
{
    try {
        auto c = QSharedPointer<Connection>::create();
        c->m_id = RecordJson::toUuid(object, QStringLiteral("id"), Record);
        c->m_displayName = RecordJson::toString(object, QStringLiteral("displayName"), Record);
        c->m_type = RecordJson::toInt(object, QStringLiteral("type"), Record, 1, LastProviderType);
        c->m_syncInProgress = RecordJson::toBool(object, QStringLiteral("syncInProgress"), Record);
        return c;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

} // namespace NVB::Info::Storage
