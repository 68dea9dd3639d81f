#include "settingswatcher.h"

#include <QFileInfo>
#include <QJsonObject>

#include "core/nvldebug.h"
#include "retrypolicy.h"
#include "server/notifier.h"
#include "service/notification/format.h"
#include "stores/defaultsettings.h"
#include "transferthrottle.h"

namespace NVB::Engine {

namespace Format = NVB::Common::Communication::Notification::Format;

namespace {

constexpr int PauseMs = 150;
const QString LocalBandwidth = QStringLiteral("Local Bandwidth");
const QString RetryAttempts = QStringLiteral("RetryAttempts");
const QString RetryInterval = QStringLiteral("RetryInterval");

} // namespace

SettingsWatcher::SettingsWatcher(NVB::DefaultSettings* settings, Notifier* notifier, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_notifier(notifier)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(PauseMs);
    connect(&m_pause, &QTimer::timeout, this, &SettingsWatcher::reload);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_pause, qOverload<>(&QTimer::start));
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_pause, qOverload<>(&QTimer::start));
    watch();
}

void SettingsWatcher::watch()
{
    const QFileInfo file(m_settings->filePath());
    // The folder may not exist before the first setting is saved; its parent
    // then tells when it is made.
    QString folder = file.absolutePath();
    while (!QFileInfo::exists(folder) && QFileInfo(folder).absolutePath() != folder)
        folder = QFileInfo(folder).absolutePath();
    if (!m_watcher.directories().contains(folder)) {
        m_watcher.removePaths(m_watcher.directories());
        m_watcher.addPath(folder);
    }
    if (file.exists() && !m_watcher.files().contains(file.absoluteFilePath()))
        m_watcher.addPath(file.absoluteFilePath());
}

void SettingsWatcher::reload()
{
    watch();
    const QStringList keys = m_settings->reload();
    if (keys.isEmpty())
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info()
        << QStringLiteral("Default settings changed: %1").arg(keys.join(QStringLiteral(", ")));
    apply(keys);
    for (const QString& key : keys) {
        m_notifier->notify(Format::System::DefaultSettingsChanged::Type,
            {{QLatin1String(Format::System::DefaultSettingsChanged::Property), key}});
    }
    emit changed(keys);
}

void SettingsWatcher::applyAll()
{
    apply({LocalBandwidth, RetryAttempts});
}

void SettingsWatcher::apply(const QStringList& keys)
{
    if (keys.contains(LocalBandwidth)) {
        const QString text = m_settings->getLocalBandwidth();
        const qint64 rate = bytesPerSecond(text);
        if (rate == 0 && text.trimmed() != QLatin1String("-1")) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("\"Local Bandwidth\" is \"%1\", no KByte/s from 1 to 999999; no limit applies")
                       .arg(text);
        }
        TransferThrottle::local().setRate(rate);
    }
    if (keys.contains(RetryAttempts) || keys.contains(RetryInterval)) {
        RetryPolicy::storage().set(
            m_settings->getConnectionRetryAttempts().toInt(), m_settings->getConnectionRetryInterval().toInt());
    }
}

qint64 SettingsWatcher::bytesPerSecond(const QString& kiloBytesPerSecond)
{
    bool ok = false;
    const qint64 value = kiloBytesPerSecond.trimmed().toLongLong(&ok);
    return ok && value > 0 ? value * 1024 : 0;
}

} // namespace NVB::Engine
