#include "accountfolder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "core/bytename.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace {

constexpr int FileSystemProvider = 1;

} // namespace

QString AccountFolder::prepare(EngineStore* store, const QUuid& accountId, QString* prefix, QString* error)
{
    const auto account = store->account(accountId);
    if (!account) {
        *error = QStringLiteral("The plan's storage account %1 does not exist").arg(accountId.toString());
        return {};
    }
    if (account->type != FileSystemProvider) {
        *error = QStringLiteral("Storage account \"%1\": this engine writes only to File System accounts; "
                                "transfers to this provider are not supported yet")
                     .arg(account->displayName);
        return {};
    }
    QString folder = account->params.value(QStringLiteral("Path")).toString().trimmed();
    if (!folder.startsWith(QLatin1Char('/'))) {
        *error = QStringLiteral("Storage account \"%1\" has no local folder").arg(account->displayName);
        return {};
    }
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    *prefix = account->prefix;
    // A drive that is not mounted leaves an empty mount point behind; writing
    // there would fill the system disk. The account's folder must be there
    // and, once the engine has prepared it, carry the account's marker.
    if (!QFileInfo(folder).isDir()) {
        *error = QStringLiteral("The folder %1 of storage account \"%2\" does not exist; is its drive mounted?")
                     .arg(folder, account->displayName);
        return {};
    }
    const QString home = folder + QStringLiteral("NVB_") + account->prefix;
    QFile marker(home + QLatin1Char('/') + markerFileName());
    const QByteArray expected = accountId.toString().toUtf8();
    if (marker.exists()) {
        if (!marker.open(QIODevice::ReadOnly) || marker.readAll().trimmed() != expected) {
            *error = QStringLiteral("The folder %1 carries the marker of another storage account").arg(home);
            return {};
        }
    } else {
        // No marker yet. Data recorded for the account must be found in the
        // folder (an older engine made it without a marker: it is adopted);
        // recorded data with no folder at all is a drive that is missing.
        const QList<StoredBunch> recorded = store->bunches(accountId);
        const bool holdsRecorded = std::any_of(recorded.cbegin(), recorded.cend(), [&home](const StoredBunch& bunch) {
            return QFileInfo(home + QLatin1Char('/') + bunch.id.toString(QUuid::WithoutBraces)).isDir();
        });
        if (!recorded.isEmpty() && !holdsRecorded) {
            *error = QStringLiteral("The folder %1 of storage account \"%2\" holds neither its marker file %3 nor its "
                                    "backups; is the right drive mounted?")
                         .arg(home, account->displayName, markerFileName());
            return {};
        }
        if (!QDir().mkpath(home) || !marker.open(QIODevice::WriteOnly | QIODevice::NewOnly)
            || marker.write(expected + '\n') < 0 || !marker.flush() || ::fsync(marker.handle()) != 0) {
            *error = QStringLiteral("Cannot prepare the folder %1 of storage account \"%2\"")
                         .arg(home, account->displayName);
            return {};
        }
    }
    return folder;
}

FolderHandle AccountFolder::makeRunFolder(const FolderHandle& storage, const QString& objectPrefix, QString* error)
{
    const QByteArray runFolder = NVL::ByteName::encode(objectPrefix);
    const int slash = runFolder.lastIndexOf('/');
    const FolderHandle parent = slash > 0 ? storage.openBelow(runFolder.left(slash), true, error) : FolderHandle();
    if (!parent.isValid())
        return {};
    const QByteArray last = runFolder.mid(slash + 1);
    if (::mkdirat(parent.fd(), last.constData(), 0700) != 0) {
        *error = QStringLiteral("Cannot make the run's folder %1: %2")
                     .arg(objectPrefix, QString::fromLocal8Bit(std::strerror(errno)));
        return {};
    }
    return parent.openBelow(last, false, error);
}

} // namespace NVB::Engine
