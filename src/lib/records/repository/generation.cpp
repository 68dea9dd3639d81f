#include "generation.h"

#include <limits>

#include "core/nvldebug.h"
#include "records/recordjson.h"

namespace NVB::Info::Repository {

namespace {
const QString Record = QStringLiteral("generation");
}

QJsonObject Generation::toJson() const
{
    return {{QStringLiteral("id"), RecordJson::fromUuid(m_id)},
        {QStringLiteral("bunchId"), RecordJson::fromUuid(m_bunchId)},
        {QStringLiteral("connectionId"), RecordJson::fromUuid(m_connectionId)},
        {QStringLiteral("firstRestorePoint"), RecordJson::fromDateTime(m_firstRestorePoint)},
        {QStringLiteral("lastRestorePoint"), RecordJson::fromDateTime(m_lastRestorePoint)},
        {QStringLiteral("status"), int(m_status)}, {QStringLiteral("brokenType"), int(m_brokenType)},
        {QStringLiteral("deepSync"), int(m_deepSync)}, {QStringLiteral("isEncrypted"), m_isEncrypted},
        {QStringLiteral("hint"), m_hint}, {QStringLiteral("storageSize"), RecordJson::fromUInt64(m_storageSize)}};
}

QSharedPointer<Generation> Generation::fromJson(const QJsonObject& object)
{
    constexpr int maxInt = std::numeric_limits<int>::max();
    try {
        auto g = QSharedPointer<Generation>::create();
        g->m_id = RecordJson::toUuid(object, QStringLiteral("id"), Record);
        g->m_bunchId = RecordJson::toUuid(object, QStringLiteral("bunchId"), Record);
        g->m_connectionId = RecordJson::toUuid(object, QStringLiteral("connectionId"), Record);
        g->m_firstRestorePoint = RecordJson::toDateTime(object, QStringLiteral("firstRestorePoint"), Record);
        g->m_lastRestorePoint = RecordJson::toDateTime(object, QStringLiteral("lastRestorePoint"), Record);
        g->m_status = Status(RecordJson::toInt(object, QStringLiteral("status"), Record, Clean, Error));
        g->m_brokenType
            = NVL::Archive::BrokenType(RecordJson::toInt(object, QStringLiteral("brokenType"), Record, 0, maxInt));
        g->m_deepSync = NVL::Archive::DeepSyncType(RecordJson::toInt(
            object, QStringLiteral("deepSync"), Record, NVL::Archive::DeepSyncNone, NVL::Archive::DeepSyncDone));
        g->m_isEncrypted = RecordJson::toBool(object, QStringLiteral("isEncrypted"), Record);
        g->m_hint = RecordJson::toBase64(object, QStringLiteral("hint"), Record);
        g->m_storageSize = RecordJson::toUInt64(object, QStringLiteral("storageSize"), Record);
        return g;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

} // namespace NVB::Info::Repository
