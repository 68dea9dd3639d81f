#include "paramreader.h"

#include <cmath>

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

qint64 ParamReader::integer(const char* key, qint64 fallback, qint64 min, qint64 max)
{
    const QJsonValue value = m_params.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull())
        return fallback;
    min = qMax(min, -ExactLimit);
    max = qMin(max, ExactLimit);
    // Ids of history rows may come as numbers or as decimal texts.
    if (value.isString()) {
        if (value.toString().isEmpty())
            return fallback;
        bool ok = false;
        const qint64 number = value.toString().toLongLong(&ok);
        if (ok && number >= min && number <= max)
            return number;
        fail(key, ok ? QStringLiteral("is out of range") : QStringLiteral("is not a number"));
        return fallback;
    }
    if (!value.isDouble()) {
        fail(key, QStringLiteral("is not a number"));
        return fallback;
    }
    // Compared as doubles before any cast: a double outside the integer's
    // range has no defined conversion.
    const double number = value.toDouble();
    if (!std::isfinite(number) || number < double(min) || number > double(max)) {
        fail(key, QStringLiteral("is out of range"));
        return fallback;
    }
    if (std::trunc(number) != number) {
        fail(key, QStringLiteral("is not a whole number"));
        return fallback;
    }
    return qint64(number);
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
