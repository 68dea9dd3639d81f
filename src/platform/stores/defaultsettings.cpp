#include "defaultsettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QSaveFile>

#include "core/apppath.h"
#include "core/nvldebug.h"
#include "retentionpolicyconstants.h"

namespace NVB {

namespace {

std::function<void()>& beforeCommitHook()
{
    static std::function<void()> hook;
    return hook;
}

NVL::NvlDebugStream warning()
{
    return NVL::NvlDebug(QStringLiteral("NVB")).warning();
}

} // namespace

DefaultSettings* DefaultSettings::instance()
{
    static DefaultSettings settings(Defines::AppPath::to().config() + QStringLiteral("/defaultsettings.json"),
                                    defaultValues());
    return &settings;
}

DefaultSettings::DefaultSettings(const QString& filePath, const QMap<QString, QString>& defaults)
    : m_filePath(filePath)
{
    load(defaults);
}

DefaultSettings::~DefaultSettings()
{
    qDeleteAll(m_items);
}

QMap<QString, QString> DefaultSettings::defaultValues()
{
    using namespace Constants::RetentionPolicy;
    return {
        {QStringLiteral("DefaultChunkSize"), QStringLiteral("10485760")},
        // Days after a plan's last good run before the plan table marks it.
        {QStringLiteral("PlanOverdueDays"), QStringLiteral("7")},
        {QStringLiteral("MultiThread threads count"), QStringLiteral("4")},
        {QStringLiteral("MultiThread memory usage"), QStringLiteral("536870912")},
        {QStringLiteral("Glacier queue size"), QStringLiteral("10")},
        {QStringLiteral("Logs Rotate TimeOut"), QStringLiteral("30")},
        {QStringLiteral("LogPath"), QString()},
        {QStringLiteral("MasterPassword"), QString()},
        {QStringLiteral("WebAccessEnabled"), QStringLiteral("false")},
        {QStringLiteral("WebAccessPort"), QStringLiteral("43210")},
        {QStringLiteral("WebAccessUseHttps"), QStringLiteral("false")},
        {QStringLiteral("WebAccessHttpsPort"), QStringLiteral("43211")},
        {QStringLiteral("BackUpOnBattery"), QStringLiteral("true")},
        {QStringLiteral("BackupSymlink"), QStringLiteral("0")},
        {QStringLiteral("Cloud Bandwidth"), QStringLiteral("-1")},
        {QStringLiteral("Local Bandwidth"), QStringLiteral("-1")},
        {QStringLiteral("RetryAttempts"), QStringLiteral("5")},
        {QStringLiteral("RetryInterval"), QStringLiteral("10000")},
        {QStringLiteral("IgnoreSSL"), QStringLiteral("false")},
        {QStringLiteral("SerializationSupportRetentionTime"), QString::fromLatin1(SerializationSupportRT_Disabled)},
        {QStringLiteral("RetentionNumberOfVersions"), QString::fromLatin1(KeepNumberOfVersions_Disasbled)},
        {QStringLiteral("RetentionDeleteLastVersion"), QStringLiteral("false")},
        {QStringLiteral("RetentionUseBackupDate"), QStringLiteral("false")},
        {QStringLiteral("Notification email"), QString()},
        {QStringLiteral("Notification user name"), QString()},
        // Where addresses are confirmed; empty: every address counts as confirmed.
        {QStringLiteral("Notification confirmation URL"), QString()},
        // The mail server of notifications; the password is enciphered.
        {QStringLiteral("SMTP host"), QString()},
        {QStringLiteral("SMTP port"), QStringLiteral("25")},
        {QStringLiteral("SMTP TLS"), QStringLiteral("false")},
        {QStringLiteral("SMTP user"), QString()},
        {QStringLiteral("SMTP password"), QString()},
        {QStringLiteral("SMTP sender"), QString()},
        // Seconds a plan's pre or post action may run before it is killed.
        {QStringLiteral("Action time limit"), QStringLiteral("3600")},
        // The engine's store file; empty means "<data folder>/nvbackup.db".
        {QStringLiteral("DatabasePath"), QString()},
        // "error", "warning", "info" or "debug".
        {QStringLiteral("LogLevel"), QStringLiteral("info")},
        // The web proxy of cloud transfers, for accounts that use one; the
        // password is enciphered.
        {QStringLiteral("ProxyEnabled"), QStringLiteral("false")},
        {QStringLiteral("ProxyHost"), QString()},
        {QStringLiteral("ProxyPort"), QStringLiteral("0")},
        {QStringLiteral("ProxyUseAuthentication"), QStringLiteral("false")},
        {QStringLiteral("ProxyUser"), QString()},
        {QStringLiteral("ProxyPasswordChanged"), QStringLiteral("false")},
        {QStringLiteral("ProxyPassword"), QString()},
    };
}

void DefaultSettings::load(const QMap<QString, QString>& defaults)
{
    QJsonObject stored;
    QFile file(m_filePath);
    if (file.exists()) {
        if (file.open(QIODevice::ReadOnly)) {
            QJsonParseError error{};
            const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
            file.close();
            if (document.isObject()) {
                stored = document.object();
            } else {
                // Keep the damaged file for a person to look at; the next
                // write would otherwise replace it.
                const QString aside = m_filePath + QStringLiteral(".damaged");
                QFile::remove(aside);
                QFile::rename(m_filePath, aside);
                warning() << QStringLiteral("Settings file %1 is damaged (%2); defaults are used and the file was kept as %3")
                                 .arg(m_filePath, error.errorString(), aside);
            }
        } else {
            warning() << QStringLiteral("Cannot read settings file %1: %2").arg(m_filePath, file.errorString());
        }
    }

    const auto onChange = [this](const Property& property) { return m_reloading || save(&property); };
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it) {
        QString value = it.value();
        const QJsonValue storedValue = stored.value(it.key());
        if (storedValue.isString())
            value = storedValue.toString();
        else if (!storedValue.isUndefined())
            warning() << QStringLiteral("Setting \"%1\" in %2 is not a text; the default is used").arg(it.key(), m_filePath);
        m_items.insert(it.key(), new Property(it.key(), value, onChange));
    }
}

bool DefaultSettings::save(const Property* changed) const
{
    QJsonObject object;
    if (changed) {
        // The console and the engine both write this file: keys the other
        // wrote since this process loaded it stay as they are.
        QFile current(m_filePath);
        if (current.open(QIODevice::ReadOnly)) {
            const QJsonDocument document = QJsonDocument::fromJson(current.readAll());
            if (document.isObject())
                object = document.object();
        }
    }
    for (auto it = m_items.cbegin(); it != m_items.cend(); ++it) {
        if (!object.contains(it.key()) || it.value() == changed)
            object.insert(it.key(), it.value()->value());
    }

    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        warning() << QStringLiteral("Cannot write settings file %1: %2").arg(m_filePath, file.errorString());
        return false;
    }
    file.write(QJsonDocument(object).toJson(QJsonDocument::Indented));
    if (beforeCommitHook())
        beforeCommitHook()();
    if (!file.commit()) {
        warning() << QStringLiteral("Cannot write settings file %1: %2").arg(m_filePath, file.errorString());
        return false;
    }
    return true;
}

QString DefaultSettings::value(const QString& key) const
{
    const auto it = m_items.constFind(key);
    return it == m_items.cend() ? QString() : it.value()->value();
}

bool DefaultSettings::setValue(const QString& key, const QString& value)
{
    const auto it = m_items.constFind(key);
    if (it == m_items.cend())
        return false;
    return it.value()->setValue(value);
}

QStringList DefaultSettings::reload()
{
    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        warning() << QStringLiteral("Settings file %1 is damaged (%2); the values in use stay")
                         .arg(m_filePath, error.errorString());
        return {};
    }
    const QJsonObject stored = document.object();
    QStringList changed;
    m_reloading = true;
    for (auto it = m_items.begin(); it != m_items.end(); ++it) {
        const QJsonValue storedValue = stored.value(it.key());
        if (storedValue.isString() && storedValue.toString() != it.value()->value()) {
            it.value()->setValue(storedValue.toString());
            changed.append(it.key());
        }
    }
    m_reloading = false;
    return changed;
}

void DefaultSettings::setBeforeCommitHookForTest(std::function<void()> hook)
{
    beforeCommitHook() = std::move(hook);
}

#define NVB_SETTING(getter, setter, key)                                                                     \
    QString DefaultSettings::getter() const { return value(QStringLiteral(key)); }                          \
    bool DefaultSettings::setter(const QString& v) { return setValue(QStringLiteral(key), v); }

NVB_SETTING(getChunkSize, setChunkSize, "DefaultChunkSize")
NVB_SETTING(getThreadCount, setThreadCount, "MultiThread threads count")
NVB_SETTING(getMemoryMaxUsage, setMemoryMaxUsage, "MultiThread memory usage")
NVB_SETTING(getGlacierQueueSize, setGlacierQueueSize, "Glacier queue size")
NVB_SETTING(getLogsRotateTimeout, setLogsRotateTimeout, "Logs Rotate TimeOut")
NVB_SETTING(getMasterPassword, setMasterPassword, "MasterPassword")
NVB_SETTING(getWebAccessUseHttp, setWebAccessUseHttp, "WebAccessEnabled")
NVB_SETTING(getWebAccessHttpPort, setWebAccessHttpPort, "WebAccessPort")
NVB_SETTING(getWebAccessUseHttps, setWebAccessUseHttps, "WebAccessUseHttps")
NVB_SETTING(getWebAccessHttpsPort, setWebAccessHttpsPort, "WebAccessHttpsPort")
NVB_SETTING(getBackupSymlink, setBackupSymlink, "BackupSymlink")
NVB_SETTING(getCloudBandwidth, setCloudBandwidth, "Cloud Bandwidth")
NVB_SETTING(getLocalBandwidth, setLocalBandwidth, "Local Bandwidth")
NVB_SETTING(getConnectionRetryAttempts, setConnectionRetryAttempts, "RetryAttempts")
NVB_SETTING(getConnectionRetryInterval, setConnectionRetryInterval, "RetryInterval")
NVB_SETTING(getIgnoreSSL, setIgnoreSSL, "IgnoreSSL")
NVB_SETTING(getSerializationSupportRetentionTime, setSerializationSupportRetentionTime, "SerializationSupportRetentionTime")
NVB_SETTING(getRetentionNumberOfVersions, setRetentionNumberOfVersions, "RetentionNumberOfVersions")
NVB_SETTING(getRetentionDeleteLastVersion, setRetentionDeleteLastVersion, "RetentionDeleteLastVersion")
NVB_SETTING(getRetentionUseBackupDate, setRetentionUseBackupDate, "RetentionUseBackupDate")
NVB_SETTING(getNotifEmail, setNotifEmail, "Notification email")
NVB_SETTING(getNotifUserName, setNotifUserName, "Notification user name")

#undef NVB_SETTING

QString DefaultSettings::getBackUpOnBattery() const
{
    return value(QStringLiteral("BackUpOnBattery"));
}

bool DefaultSettings::setLogPath(const QString& v)
{
    return setValue(QStringLiteral("LogPath"), v);
}

} // namespace NVB
