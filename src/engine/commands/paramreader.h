#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// Reads a request's arguments and remembers the first one that is missing or
// of the wrong type, so a handler answers one clear error naming the key.
class ParamReader
{
public:
    explicit ParamReader(const QJsonObject& params);

    QUuid uuid(const char* key, bool required = true);
    QString string(const char* key, bool required = true);
    bool boolean(const char* key, bool fallback = false);
    // Whole numbers from `min` to `max`, which lie within the ±2^53 that a
    // JSON number holds exactly; anything else is refused, not cast.
    static constexpr qint64 ExactLimit = qint64(1) << 53;
    qint64 integer(const char* key, qint64 fallback = 0, qint64 min = -ExactLimit, qint64 max = ExactLimit);
    QJsonObject object(const char* key, bool required = true);

    bool ok() const { return m_error.isEmpty(); }
    QString error() const { return m_error; }

private:
    void fail(const char* key, const QString& what);

    QJsonObject m_params;
    QString m_error;
};

} // namespace NVB::Engine
