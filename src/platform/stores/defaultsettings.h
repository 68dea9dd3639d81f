#pragma once

#include <functional>

#include <QMap>
#include <QString>
#include <QStringList>

#include "property.h"

namespace NVB {

// The engine's default options, as named text values ("true"/"false" for
// switches, decimal numbers). Kept as a JSON object in
// "<config>/defaultsettings.json"; every change is written through at once,
// atomically, so a crash leaves either the old file or the new one.
//
// A key the store does not hold reads as an empty text and ignores writes.
class DefaultSettings
{
public:
    static DefaultSettings* instance();

    // A store on its own file holding exactly the keys of `defaults`, with the
    // file's values over them. instance() uses the config directory and
    // defaultValues().
    DefaultSettings(const QString& filePath, const QMap<QString, QString>& defaults);
    ~DefaultSettings();
    DefaultSettings(const DefaultSettings&) = delete;
    DefaultSettings& operator=(const DefaultSettings&) = delete;

    static QMap<QString, QString> defaultValues();

    QMap<QString, Property*> items() const { return m_items; }
    QString filePath() const { return m_filePath; }

    QString value(const QString& key) const;
    // False when the key is unknown or the file could not be written.
    bool setValue(const QString& key, const QString& value);
    // Takes the values another process wrote to the file since; answers the
    // keys that changed. Writes nothing, and an unreadable file changes nothing.
    QStringList reload();

    QString getChunkSize() const;
    bool setChunkSize(const QString& value);
    QString getThreadCount() const;
    bool setThreadCount(const QString& value);
    QString getMemoryMaxUsage() const;
    bool setMemoryMaxUsage(const QString& value);
    QString getGlacierQueueSize() const;
    bool setGlacierQueueSize(const QString& value);
    QString getLogsRotateTimeout() const;
    bool setLogsRotateTimeout(const QString& value);
    bool setLogPath(const QString& value);
    QString getMasterPassword() const;
    bool setMasterPassword(const QString& value);
    QString getWebAccessUseHttp() const;
    bool setWebAccessUseHttp(const QString& value);
    QString getWebAccessHttpPort() const;
    bool setWebAccessHttpPort(const QString& value);
    QString getWebAccessUseHttps() const;
    bool setWebAccessUseHttps(const QString& value);
    QString getWebAccessHttpsPort() const;
    bool setWebAccessHttpsPort(const QString& value);
    QString getBackUpOnBattery() const;
    QString getBackupSymlink() const;
    bool setBackupSymlink(const QString& value);
    QString getCloudBandwidth() const;
    bool setCloudBandwidth(const QString& value);
    QString getLocalBandwidth() const;
    bool setLocalBandwidth(const QString& value);
    QString getConnectionRetryAttempts() const;
    bool setConnectionRetryAttempts(const QString& value);
    QString getConnectionRetryInterval() const;
    bool setConnectionRetryInterval(const QString& value);
    QString getIgnoreSSL() const;
    bool setIgnoreSSL(const QString& value);
    QString getSerializationSupportRetentionTime() const;
    bool setSerializationSupportRetentionTime(const QString& value);
    QString getRetentionNumberOfVersions() const;
    bool setRetentionNumberOfVersions(const QString& value);
    QString getRetentionDeleteLastVersion() const;
    bool setRetentionDeleteLastVersion(const QString& value);
    QString getRetentionUseBackupDate() const;
    bool setRetentionUseBackupDate(const QString& value);
    QString getNotifEmail() const;
    bool setNotifEmail(const QString& value);
    QString getNotifUserName() const;
    bool setNotifUserName(const QString& value);

    // Called between writing the new contents and putting them in place;
    // tests use it to die in the middle of a write.
    static void setBeforeCommitHookForTest(std::function<void()> hook);

private:
    void load(const QMap<QString, QString>& defaults);
    // With `changed`, only that key is written over what the file holds now.
    bool save(const Property* changed = nullptr) const;

    QString m_filePath;
    QMap<QString, Property*> m_items;
    bool m_reloading = false;
};

} // namespace NVB
