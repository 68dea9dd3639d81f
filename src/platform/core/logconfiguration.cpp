#include "logconfiguration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "apppath.h"
#include "loglevel.h"
#include "nvldebug.h"
#include "stores/defaultsettings.h"

namespace NVB::Defines::Log {

void Configuration::apply()
{
    if (qEnvironmentVariableIsEmpty("NVB_LOG_LEVEL"))
        NVL::NvlDebug::setLevel(Level::toLogLevel(Level::getFromDefault().level()));
    QString name = QCoreApplication::applicationName();
    if (name.isEmpty())
        name = QStringLiteral("nvb");
    const QString folder = AppPath::logs();
    bool ok = false;
    const int keepDays = DefaultSettings::instance()->getLogsRotateTimeout().toInt(&ok);
    // Rotating before the file is opened, so that this run starts a fresh
    // file when the old one is from another day.
    rotate(folder, name, ok && keepDays > 0 ? keepDays : 30);
    if (folder != AppPath::defaultLogs())
        NVL::NvlDebug::setLogFile(folder + QLatin1Char('/') + name + QStringLiteral(".log"));
}

int Configuration::rotate(const QString& folder, const QString& name, int keepDays, const QDateTime& now)
{
    const QDir dir(folder);
    const QString current = dir.filePath(name + QStringLiteral(".log"));
    const QFileInfo currentInfo(current);
    if (currentInfo.exists()) {
        // A file last written before today was begun before today too, even
        // where the file system keeps no birth time or a copy reset it.
        QDateTime begun = currentInfo.lastModified();
        if (currentInfo.birthTime().isValid() && currentInfo.birthTime() < begun)
            begun = currentInfo.birthTime();
        if (begun.date() < now.date()) {
            const QString rotated = current + QLatin1Char('.') + begun.toString(QStringLiteral("yyyyMMdd-HHmmss"));
            QFile::rename(current, rotated);
        }
    }
    int removed = 0;
    const QDateTime limit = now.addDays(-keepDays);
    for (const QFileInfo& old : dir.entryInfoList({name + QStringLiteral(".log.*")}, QDir::Files)) {
        if (old.lastModified() < limit && QFile::remove(old.absoluteFilePath()))
            ++removed;
    }
    return removed;
}

} // namespace NVB::Defines::Log
