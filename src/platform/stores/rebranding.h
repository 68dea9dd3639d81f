#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

namespace NVB::Defines {

// What a reseller's build may change. The values are a JSON object in
// "<share>/rebranding.json" (or the file NVB_REBRANDING_FILE names), a file a
// reseller replaces; a key missing there falls back to the values built in.
// Read once, on first use.
class Rebranding
{
public:
    static Rebranding* instance();

    // A missing key gives an invalid QVariant.
    QVariant value(const QString& key) const;
    QVariant value(const char* key) const { return value(QString::fromLatin1(key)); }

    // Reads the values from one file over the built-in ones; used by
    // instance() and by tests that bring their own file.
    explicit Rebranding(const QString& filePath);

private:
    static QVariantMap readFile(const QString& filePath, bool quietIfMissing);

    QVariantMap m_values;
};

} // namespace NVB::Defines
