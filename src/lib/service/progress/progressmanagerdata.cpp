#include "progressmanagerdata.h"

#include <QJsonValue>

namespace NVB::System::Progress {

namespace {
bool readNumber(const QJsonObject& object, const char* key, qint64& target)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull())
        return true;
    if (!value.isDouble())
        return false;
    target = qint64(value.toDouble());
    return true;
}
} // namespace

QSharedPointer<ProgressManagerData> ProgressManagerData::fromJson(const QJsonObject& object)
{
    auto data = QSharedPointer<ProgressManagerData>::create();
    const QJsonValue mode = object.value(QStringLiteral("workerMode"));
    if (!(mode.isUndefined() || mode.isString()))
        return {};
    data->m_workerMode = mode.toString();
    qint64 progress = data->m_progress;
    const bool ok = readNumber(object, "progress", progress) && readNumber(object, "elapsedMs", data->m_elapsedMs)
        && readNumber(object, "speed", data->m_speed) && readNumber(object, "dataSize", data->m_dataSize)
        && readNumber(object, "bytesSent", data->m_bytesSent)
        && readNumber(object, "totalFileCount", data->m_totalFileCount)
        && readNumber(object, "uploadedFileCount", data->m_uploadedFileCount)
        && readNumber(object, "failedFileCount", data->m_failedFileCount);
    if (!ok)
        return {};
    data->m_progress = int(progress);
    return data;
}

QJsonObject ProgressManagerData::toJson() const
{
    return {{QStringLiteral("workerMode"), m_workerMode}, {QStringLiteral("progress"), m_progress},
        {QStringLiteral("elapsedMs"), double(m_elapsedMs)}, {QStringLiteral("speed"), double(m_speed)},
        {QStringLiteral("dataSize"), double(m_dataSize)}, {QStringLiteral("bytesSent"), double(m_bytesSent)},
        {QStringLiteral("totalFileCount"), double(m_totalFileCount)},
        {QStringLiteral("uploadedFileCount"), double(m_uploadedFileCount)},
        {QStringLiteral("failedFileCount"), double(m_failedFileCount)}};
}

} // namespace NVB::System::Progress
