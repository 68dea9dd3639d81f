#include "paramreader.h"

namespace NVB::Engine {

ParamReader::ParamReader(const QJsonObject& params)
    : m_params(params)
{
}

void ParamReader::fail(const char* key, const QString& what)
{
    if (m_error.isEmpty())
        m_error = QStringLiteral("The argument \"%1\" %2").arg(QLatin1String(key), what);
}

QUuid ParamReader::uuid(const char* key, bool required)
{
    const QJsonValue value = m_params.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull()) {
        if (required)
            fail(key, QStringLiteral("is missing"));
        return {};
    }
    const QUuid id(value.toString());
    if (!value.isString() || id.isNull())
        fail(key, QStringLiteral("is not an id"));
    return id;
}

QString ParamReader::string(const char* key, bool required)
{
    const QJsonValue value = m_params.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull()) {
        if (required)
            fail(key, QStringLiteral("is missing"));
        return {};
    }
    if (!value.isString())
        fail(key, QStringLiteral("is not a text"));
    return value.toString();
}

bool ParamReader::boolean(const char* key, bool fallback)
{
    const QJsonValue value = m_params.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull())
        return fallback;
    if (!value.isBool())
        fail(key, QStringLiteral("is not true or false"));
    return value.toBool(fallback);
}

qint64 ParamReader::integer(const char* key, qint64 fallback)
{
    const QJsonValue value = m_params.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull())
        return fallback;
    // Ids of history rows may come as numbers or as decimal texts.
    if (value.isString()) {
        bool ok = false;
        const qint64 number = value.toString().toLongLong(&ok);
        if (ok || value.toString().isEmpty())
            return ok ? number : fallback;
    } else if (value.isDouble()) {
        return qint64(value.toDouble());
    }
    fail(key, QStringLiteral("is not a number"));
    return fallback;
}

QJsonObject ParamReader::object(const char* key, bool required)
{
    const QJsonValue value = m_params.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull()) {
        if (required)
            fail(key, QStringLiteral("is missing"));
        return {};
    }
    if (!value.isObject())
        fail(key, QStringLiteral("is not an object"));
    return value.toObject();
}

} // namespace NVB::Engine
