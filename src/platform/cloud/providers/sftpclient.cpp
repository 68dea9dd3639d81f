#include "sftpclient.h"

#include <libssh/libssh.h>
#include <libssh/sftp.h>

#include "cloud/cloudconfig.h"
#include "core/bytename.h"
#include "listingpager.h"
#include "listingsnapshots.h"
#include "sftpdirectoryreader.h"

namespace NVL::Cloud {

namespace {

namespace Net = Config::Network;

OperationResult cancelled()
{
    return OperationResult::failure(OperationError::Cancelled, QStringLiteral("Operation cancelled"));
}

QByteArray joinPath(const QByteArray& folder, const QByteArray& name)
{
    if (folder.isEmpty())
        return name;
    if (folder.endsWith('/'))
        return folder + name;
    return folder + '/' + name;
}

QString joinKey(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : folder + QLatin1Char('/') + name;
}

} // namespace

SftpClient::SftpClient() = default;

SftpClient::~SftpClient()
{
    close();
}

void SftpClient::close()
{
    if (m_sftp) {
        sftp_free(m_sftp);
        m_sftp = nullptr;
    }
    m_ssh.close();
}

OperationResult SftpClient::open(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    close();
    const QString root = config.value(Net::Sftp::Path).toString().trimmed();
    m_root = NVL::ByteName::encode(root);
    OperationResult result = m_ssh.configure(config);
    if (result.isError())
        return result;
    if (root.isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("SFTP path is empty"));
    result = m_ssh.connect(config, cancel);
    if (result.isError())
        return result;

    m_ssh.beginStep(QStringLiteral("starting SFTP"));
    m_sftp = sftp_new(m_ssh.session());
    const bool started = m_sftp && sftp_init(m_sftp) == SSH_OK;
    m_ssh.endStep();
    if (!started) {
        result = m_ssh.interrupted();
        if (result.isError())
            return result;
        return OperationResult::failure(OperationError::ConnectionFailed,
            QStringLiteral("SFTP is not available on %1: %2").arg(m_ssh.host(), m_ssh.sshError()));
    }
    return {};
}

OperationResult SftpClient::sftpFailure(const QString& what, const QByteArray& rawPath, int status) const
{
    const OperationResult cut = m_ssh.interrupted();
    if (cut.isError())
        return cut;
    const QString path = NVL::ByteName::display(NVL::ByteName::decode(rawPath));
    const int error = status >= 0 ? status : m_sftp ? sftp_get_error(m_sftp) : SSH_FX_FAILURE;
    switch (error) {
    case SSH_FX_NO_SUCH_FILE:
    case SSH_FX_NO_SUCH_PATH:
        return OperationResult::failure(
            OperationError::NotFound, QStringLiteral("%1: \"%2\" does not exist on %3").arg(what, path, m_ssh.host()));
    case SSH_FX_PERMISSION_DENIED:
        return OperationResult::failure(
            OperationError::AccessDenied, QStringLiteral("%1: permission denied on \"%2\"").arg(what, path));
    case SSH_FX_FILE_ALREADY_EXISTS:
        return OperationResult::failure(
            OperationError::AlreadyExists, QStringLiteral("%1: \"%2\" already exists").arg(what, path));
    default:
        return OperationResult::failure(
            OperationError::IoError, QStringLiteral("%1 \"%2\": %3").arg(what, path, m_ssh.sshError()));
    }
}

OperationResult SftpClient::checkRoot()
{
    m_ssh.beginStep(QStringLiteral("reading the folder"));
    sftp_attributes attributes = sftp_stat(m_sftp, m_root.constData());
    m_ssh.endStep();
    if (!attributes)
        return sftpFailure(QStringLiteral("Can't open the folder"), m_root);
    const bool folder = attributes->type == SSH_FILEXFER_TYPE_DIRECTORY;
    sftp_attributes_free(attributes);
    if (!folder)
        return OperationResult::failure(OperationError::InvalidConfig,
            QStringLiteral("\"%1\" on %2 is not a folder")
                .arg(NVL::ByteName::display(NVL::ByteName::decode(m_root)), m_ssh.host()));
    return {};
}

OperationResult SftpClient::readFolder(const QByteArray& path, const QString& keyBase, bool recursive,
    QVector<Api::ListingObject>* entries, const CancelToken& cancel)
{
    m_ssh.beginStep(QStringLiteral("opening a folder"));
    sftp_dir dir = sftp_opendir(m_sftp, path.constData());
    m_ssh.endStep();
    if (!dir)
        return sftpFailure(QStringLiteral("Can't list the folder"), path);

    QVector<QByteArray> folders;
    SftpDirectoryReader reader(m_sftp, dir);
    QVector<SftpDirectoryReader::Entry> batch;
    bool more = true;
    while (more) {
        batch.clear();
        m_ssh.beginStep(QStringLiteral("reading a folder"));
        more = reader.read(&batch);
        m_ssh.endStep();
        for (const SftpDirectoryReader::Entry& entry : qAsConst(batch)) {
            if (entry.name == "." || entry.name == "..")
                continue;
            // readdir does not follow links, so a link to a folder stays a leaf
            // and a loop of links cannot trap a recursive listing.
            const QString key = joinKey(keyBase, NVL::ByteName::decode(entry.name));
            entries->append(Api::ListingObject(key, entry.folder, entry.folder ? 0 : qint64(entry.size),
                QDateTime::fromSecsSinceEpoch(entry.modified, Qt::UTC)));
            if (entry.folder && recursive)
                folders.append(entry.name);
        }
        if (cancel.isCancelled()) {
            sftp_closedir(dir);
            return cancelled();
        }
    }
    sftp_closedir(dir);
    if (reader.failed())
        return sftpFailure(QStringLiteral("Listing broke off in"), path, reader.status());

    for (const QByteArray& folder : qAsConst(folders)) {
        OperationResult result = readFolder(
            joinPath(path, folder), joinKey(keyBase, NVL::ByteName::decode(folder)), recursive, entries, cancel);
        if (result.isError())
            return result;
    }
    return {};
}

OperationResult SftpClient::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    result = checkRoot();
    if (result.isError())
        return result;

    result.config = config;
    result.config.insert(Net::Port, m_ssh.port());
    m_ssh.beginStep(QStringLiteral("reading the folder"));
    char* canonical = sftp_canonicalize_path(m_sftp, m_root.constData());
    m_ssh.endStep();
    if (canonical) {
        result.config.insert(Net::Sftp::Path, NVL::ByteName::decode(QByteArray(canonical)));
        ssh_string_free_char(canonical);
    }
    const OperationResult cut = m_ssh.interrupted();
    return cut.isError() ? cut : result;
}

OperationResult SftpClient::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    QVector<Api::ListingObject> entries;
    result = readFolder(m_root, QString(), false, &entries, cancel);
    if (result.isError())
        return result;
    std::sort(entries.begin(), entries.end(),
        [](const Api::ListingObject& a, const Api::ListingObject& b) { return a.name() < b.name(); });
    for (const Api::ListingObject& entry : qAsConst(entries)) {
        if (entry.isFolder())
            result.data.append(QJsonObject {{QStringLiteral("Name"), entry.name()}});
    }
    return result;
}

OperationResult SftpClient::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(QStringLiteral("Name")).toString().trimmed();
    const QString nameError = containerNameError(name);
    if (!nameError.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, nameError);
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    result = checkRoot();
    if (result.isError())
        return result;
    const QByteArray folder = joinPath(m_root, NVL::ByteName::encode(name));
    m_ssh.beginStep(QStringLiteral("creating a folder"));
    const int made = sftp_mkdir(m_sftp, folder.constData(), 0755);
    m_ssh.endStep();
    if (made != SSH_OK)
        return sftpFailure(QStringLiteral("Can't create the folder"), folder);
    return result;
}

OperationResult SftpClient::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
{
    if (!ListingPager::isSupportedDelimiter(request.delimiter))
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Unsupported delimiter \"%1\"").arg(request.delimiter));
    ListingRequest relative = request;
    relative.prefix = ListingPager::relativePrefix(config.value(Net::Sftp::Path).toString().trimmed(), request.prefix);
    const QString prefixError = ListingPager::prefixError(relative.prefix);
    if (!prefixError.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, prefixError);
    ListingRequest unmarked = relative;
    unmarked.marker.clear();
    const QString snapshot = ListingSnapshots::keyOf(config, unmarked);
    // A later page needs no connection at all.
    if (std::optional<OperationResult> page = ListingSnapshots::instance().nextPage(snapshot, relative))
        return *page;
    OperationResult result = open(config, cancel);
    if (result.isError())
        return result;
    result = checkRoot();
    if (result.isError())
        return result;

    const QString folder = ListingPager::splitPrefix(relative.prefix).first;
    const QByteArray base = folder.isEmpty() ? m_root : joinPath(m_root, NVL::ByteName::encode(folder));

    QVector<Api::ListingObject> entries;
    m_ssh.beginStep(QStringLiteral("reading the folder"));
    sftp_attributes attributes = sftp_stat(m_sftp, base.constData());
    m_ssh.endStep();
    const bool exists = attributes && attributes->type == SSH_FILEXFER_TYPE_DIRECTORY;
    if (attributes)
        sftp_attributes_free(attributes);
    result = m_ssh.interrupted();
    if (result.isError())
        return result;
    // Like an object store, a prefix below no existing folder lists nothing.
    if (exists) {
        result = readFolder(base, folder, request.delimiter.isEmpty(), &entries, cancel);
        if (result.isError())
            return result;
    }
    return ListingSnapshots::instance().firstPage(snapshot, std::move(entries), relative);
}

} // namespace NVL::Cloud
