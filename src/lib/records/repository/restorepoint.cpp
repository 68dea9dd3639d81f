#include "restorepoint.h"

#include <limits>

#include "core/nvldebug.h"
#include "records/recordjson.h"

namespace NVB::Info::Repository {

namespace {
const QString Record = QStringLiteral("restore point");
}

QJsonObject RestorePoint::toJson() const
{
    return {{QStringLiteral("connectionId"), RecordJson::fromUuid(m_connectionId)},
        {QStringLiteral("bunchId"), RecordJson::fromUuid(m_bunchId)},
        {QStringLiteral("generationId"), RecordJson::fromUuid(m_generationId)},
        {QStringLiteral("sequenceNumber"), m_sequenceNumber},
        {QStringLiteral("startDate"), RecordJson::fromDateTime(m_startDate)},
        {QStringLiteral("backupType"), int(m_backupType)}, {QStringLiteral("type"), int(m_type)},
        {QStringLiteral("status"), int(m_status)}, {QStringLiteral("deepSync"), int(m_deepSync)},
        {QStringLiteral("isEncrypted"), m_isEncrypted},
        {QStringLiteral("sizeOnStorage"), RecordJson::fromUInt64(quint64(m_sizeOnStorage))}};
}

QSharedPointer<RestorePoint> RestorePoint::fromJson(const QJsonObject& object)
{
    constexpr int maxInt = std::numeric_limits<int>::max();
    try {
        auto p = QSharedPointer<RestorePoint>::create();
        p->m_connectionId = RecordJson::toUuid(object, QStringLiteral("connectionId"), Record);
        p->m_bunchId = RecordJson::toUuid(object, QStringLiteral("bunchId"), Record);
        p->m_generationId = RecordJson::toUuid(object, QStringLiteral("generationId"), Record);
        p->m_sequenceNumber = RecordJson::toInt(object, QStringLiteral("sequenceNumber"), Record, 0, maxInt);
        p->m_startDate = RecordJson::toDateTime(object, QStringLiteral("startDate"), Record);
        if (!p->m_startDate.isValid())
            throw QStringLiteral("Key \"startDate\" of restore point is empty");
        p->m_backupType
            = NVL::Archive::BackupType(RecordJson::toInt(object, QStringLiteral("backupType"), Record, 0, maxInt));
        p->m_type = Type(RecordJson::toInt(object, QStringLiteral("type"), Record, 0, maxInt));
        p->m_status = Status(RecordJson::toInt(object, QStringLiteral("status"), Record, Clean, Error));
        p->m_deepSync = NVL::Archive::DeepSyncType(RecordJson::toInt(
            object, QStringLiteral("deepSync"), Record, NVL::Archive::DeepSyncNone, NVL::Archive::DeepSyncDone));
        p->m_isEncrypted = RecordJson::toBool(object, QStringLiteral("isEncrypted"), Record);
        p->m_sizeOnStorage = qint64(RecordJson::toUInt64(
            object, QStringLiteral("sizeOnStorage"), Record, quint64(std::numeric_limits<qint64>::max())));
        return p;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

} // namespace NVB::Info::Repository
