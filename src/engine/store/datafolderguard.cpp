#include "datafolderguard.h"

#include <sys/stat.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include "core/nvldebug.h"

namespace NVB::Engine {

namespace {

// Tightens one path to mode; answers the log line when it had to.
QString tighten(const QString& path, mode_t mode)
{
    struct stat info
    {
    };
    const QByteArray name = QFile::encodeName(path);
    // lstat: a link inside the folder is not followed out of it.
    // A socket is reached by peers of other users; its folder guards it.
    if (::lstat(name.constData(), &info) != 0 || S_ISLNK(info.st_mode) || S_ISSOCK(info.st_mode))
        return QString();
    const mode_t current = info.st_mode & 07777;
    if ((current & ~mode) == 0)
        return QString();
    if (::chmod(name.constData(), (current & mode) | (S_ISDIR(info.st_mode) ? S_IRWXU : (S_IRUSR | S_IWUSR))) != 0)
        return QStringLiteral("Can't restrict %1 (mode %2): %3")
            .arg(path, QString::number(current, 8), QString::fromLocal8Bit(strerror(errno)));
    return QStringLiteral("%1 was open to other users (mode %2); restricted to its owner")
        .arg(path, QString::number(current, 8));
}

} // namespace

QStringList DataFolderGuard::secure(const QString& folder)
{
    ::umask(077);
    QStringList repairs;
    if (!QDir().mkpath(folder)) {
        repairs.append(QStringLiteral("Can't create the data folder %1").arg(folder));
    } else {
        const QString own = tighten(folder, S_IRWXU);
        if (!own.isEmpty())
            repairs.append(own);
        QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
            QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QFileInfo info = it.fileInfo();
            if (info.isSymLink())
                continue;
            const QString line = tighten(path, info.isDir() ? S_IRWXU : (S_IRUSR | S_IWUSR));
            if (!line.isEmpty())
                repairs.append(line);
        }
    }
    for (const QString& line : qAsConst(repairs))
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << line;
    return repairs;
}

} // namespace NVB::Engine
