#include "contentobject.h"

#include <limits>

#include "core/nvldebug.h"
#include "records/recordjson.h"

namespace NVB::Info::Repository {

namespace {
const QString Record = QStringLiteral("content object");
}

QJsonObject ContentObject::toJson() const
{
    return {{QStringLiteral("displayName"), m_displayName}, {QStringLiteral("path"), m_path},
        {QStringLiteral("type"), int(m_type)}, {QStringLiteral("modifyDate"), RecordJson::fromDateTime(m_modifyDate)},
        {QStringLiteral("originalSize"), RecordJson::fromUInt64(m_originalSize)},
        {QStringLiteral("deleted"), m_deleted}};
}

QSharedPointer<ContentObject> ContentObject::fromJson(const QJsonObject& object)
{
    try {
        auto o = QSharedPointer<ContentObject>::create();
        o->m_displayName = RecordJson::toString(object, QStringLiteral("displayName"), Record);
        o->m_path = RecordJson::toString(object, QStringLiteral("path"), Record);
        if (o->m_path.isEmpty())
            throw QStringLiteral("Key \"path\" of content object is empty");
        o->m_type = Type(RecordJson::toInt(object, QStringLiteral("type"), Record, 0, std::numeric_limits<int>::max()));
        o->m_modifyDate = RecordJson::toDateTime(object, QStringLiteral("modifyDate"), Record);
        o->m_originalSize = RecordJson::toUInt64(object, QStringLiteral("originalSize"), Record);
        o->m_deleted = RecordJson::toBool(object, QStringLiteral("deleted"), Record);
        return o;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

} // namespace NVB::Info::Repository
