#include "legacyreader.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>

#include "blocks/incrementheader.h"
#include "core/bytename.h"
#include "encryption/objectsealer.h"
#include "runs/objectdecoder.h"
#include "runs/runpreparation.h"

namespace NVB::Engine {

namespace {

constexpr char ZstdMagic[4] = {'\x28', '\xB5', '\x2F', '\xFD'};
constexpr char IncrementMagic[8] = {'N', 'V', 'B', 'I', 'N', 'C', '0', '1'};
constexpr int TailSize = 8 + 32; // an increment ends with the file's size and SHA-256

qint64 nanoseconds(const timespec& time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

ObjectEncoding encodingOf(const char* head, ssize_t length)
{
    if (length >= 4 && std::memcmp(head, ObjectSealer::Magic, 4) == 0)
        return ObjectEncoding::Enciphered;
    if (length >= 4 && std::memcmp(head, ZstdMagic, 4) == 0)
        return ObjectEncoding::Zstd;
    return ObjectEncoding::Plain;
}

// Decodes the rest of `fd` to learn the plain size and keep its last bytes.
bool decodedFacts(int fd, ObjectEncoding encoding, qint64* size, QByteArray* tail, QString* error)
{
    ObjectDecoder decoder(fd, encoding);
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    *size = 0;
    tail->clear();
    for (;;) {
        const ssize_t got = decoder.read(buffer.data(), size_t(buffer.size()));
        if (got < 0) {
            *error = decoder.error();
            return false;
        }
        if (got == 0)
            return true;
        *size += got;
        tail->append(buffer.constData() + qMax<ssize_t>(0, got - TailSize), int(qMin<ssize_t>(got, TailSize)));
        if (tail->size() > TailSize)
            tail->remove(0, tail->size() - TailSize);
    }
}

quint64 littleEndian64(const char* bytes)
{
    quint64 value = 0;
    for (int i = 7; i >= 0; --i)
        value = (value << 8) | quint8(bytes[i]);
    return value;
}

} // namespace

LegacyReader::LegacyReader(const QString& accountFolder, const QString& prefix, const QUuid& planId)
    : m_accountFolder(accountFolder)
    , m_prefix(prefix)
    , m_planId(planId)
{ }

QString LegacyReader::relativePlanFolder() const
{
    return QStringLiteral("NVB_%1/%2").arg(m_prefix, RunPreparation::noBraces(m_planId));
}

QString LegacyReader::pointFolder(const QUuid& generation, int sequence) const
{
    return QStringLiteral("%1/%2/%3")
        .arg(relativePlanFolder(), RunPreparation::noBraces(generation))
        .arg(sequence, 6, 10, QLatin1Char('0'));
}

bool LegacyReader::holdsGeneration(const QString& planFolder)
{
    const QStringList names = QDir(planFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    return std::any_of(names.cbegin(), names.cend(),
        [](const QString& name) { return !QUuid(QStringLiteral("{%1}").arg(name)).isNull(); });
}

QList<QUuid> LegacyReader::generations(QString* error)
{
    const QDir folder(m_accountFolder + relativePlanFolder());
    if (!folder.exists()) {
        *error = QStringLiteral("The folder %1 does not exist").arg(folder.path());
        return {};
    }
    QList<QUuid> result;
    for (const QFileInfo& entry : folder.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        const QUuid id(QStringLiteral("{%1}").arg(entry.fileName()));
        if (!id.isNull())
            result.append(id);
    }
    return result;
}

QList<int> LegacyReader::points(const QUuid& generation, QString* error)
{
    const QDir folder(m_accountFolder + relativePlanFolder() + QLatin1Char('/') + RunPreparation::noBraces(generation));
    if (!folder.exists()) {
        *error = QStringLiteral("The folder %1 does not exist").arg(folder.path());
        return {};
    }
    QList<int> result;
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Name)) {
        bool number = false;
        const int sequence = name.toInt(&number);
        if (number && name.size() == 6 && sequence > 0)
            result.append(sequence);
    }
    return result;
}

bool LegacyReader::readPointFolder(const QUuid& generation, int sequence, PointFiles* files, QString* error)
{
    const QString base = pointFolder(generation, sequence);
    const QByteArray root = QFile::encodeName(m_accountFolder) + NVL::ByteName::encode(base);
    // Folders to read, as byte paths below the point's folder ("" is the
    // point's folder itself, the source's "/").
    QList<QByteArray> pending {QByteArray()};
    while (!pending.isEmpty()) {
        const QByteArray below = pending.takeLast();
        DIR* stream = ::opendir((root + below).constData());
        if (!stream) {
            *error = QStringLiteral("Cannot read the folder %1: %2")
                         .arg(NVL::ByteName::display(NVL::ByteName::decode(root + below)),
                             QString::fromLocal8Bit(std::strerror(errno)));
            return false;
        }
        while (const dirent* entry = ::readdir(stream)) {
            const QByteArray name(entry->d_name);
            if (name == "." || name == ".." || name.startsWith(".nvb-partial-"))
                continue;
            const QByteArray relative = below + '/' + name;
            struct stat info
            {
            };
            if (::fstatat(::dirfd(stream), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            StoredContent item;
            item.path = NVL::ByteName::decode(relative);
            item.modifiedNs = nanoseconds(info.st_mtim);
            item.modifiedUtc = QDateTime::fromMSecsSinceEpoch(item.modifiedNs / 1000000, Qt::UTC);
            if (S_ISDIR(info.st_mode)) {
                item.type = StoredContent::Folder;
                files->entries.append(item);
                pending.append(relative);
                continue;
            }
            if (!S_ISREG(info.st_mode))
                continue;
            files->size += info.st_size;
            const int fd = ::openat(::dirfd(stream), entry->d_name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
            if (fd < 0)
                continue;
            char head[8] = {};
            const ssize_t length = ::pread(fd, head, sizeof head, 0);
            item.object = base + item.path;
            QString problem;
            bool ok = true;
            if (length == 8 && std::memcmp(head, IncrementMagic, 8) == 0) {
                const auto header = IncrementHeader::read(fd, &problem);
                char inner[4] = {};
                const off_t start = header ? ::lseek(fd, 0, SEEK_CUR) : 0;
                const ObjectEncoding encoding
                    = header ? encodingOf(inner, ::pread(fd, inner, sizeof inner, start)) : ObjectEncoding::Plain;
                QByteArray tail;
                if (!header || encoding == ObjectEncoding::Enciphered) {
                    files->enciphered = files->enciphered || header;
                    ok = false;
                } else if (decodedFacts(fd, encoding, &item.size, &tail, &problem) && tail.size() == TailSize) {
                    item.size = qint64(littleEndian64(tail.constData()));
                    item.checksum = tail.mid(8);
                    item.encoding = int(encoding) | int(ObjectEncoding::Increment);
                    item.storedSize = info.st_size;
                } else {
                    ok = false;
                }
            } else {
                const ObjectEncoding encoding = encodingOf(head, length);
                if (encoding == ObjectEncoding::Enciphered) {
                    // Named by a keyed hash of its path: which file it is
                    // cannot be told without the plan's key.
                    files->enciphered = true;
                    ok = false;
                } else if (encoding == ObjectEncoding::Zstd) {
                    QByteArray tail;
                    ok = decodedFacts(fd, encoding, &item.size, &tail, &problem);
                    item.encoding = int(encoding);
                    item.storedSize = info.st_size;
                } else {
                    item.size = info.st_size;
                }
            }
            ::close(fd);
            if (ok)
                files->entries.append(item);
        }
        ::closedir(stream);
    }
    return true;
}

bool LegacyReader::read(const QUuid& generation, int sequence, FoundPoint* point, QString* error)
{
    if (generation != m_generation || sequence <= m_lastSequence) {
        m_generation = generation;
        m_lastSequence = 0;
        m_current.clear();
    }
    QString problem;
    const QList<int> all = points(generation, &problem);
    if (!problem.isEmpty()) {
        *error = problem;
        return false;
    }
    PointFiles own;
    for (int earlier : all) {
        if (earlier <= m_lastSequence || earlier > sequence)
            continue;
        PointFiles files;
        if (!readPointFolder(generation, earlier, &files, error))
            return false;
        for (const StoredContent& item : std::as_const(files.entries)) {
            // A folder seen again keeps the earlier record: only files are
            // copied again.
            if (item.type == StoredContent::File || !m_current.contains(item.path))
                m_current.insert(item.path, item);
        }
        m_lastSequence = earlier;
        if (earlier == sequence)
            own = files;
    }
    point->generation = generation;
    point->sequence = sequence;
    const QFileInfo folder(m_accountFolder + pointFolder(generation, sequence));
    // The run made its folder first, so the folder's birth is the run's
    // start; file systems without birth times give the last change instead.
    point->startUtc = (folder.birthTime().isValid() ? folder.birthTime() : folder.lastModified()).toUTC();
    point->sizeOnStorage = own.size;
    point->encrypted = own.enciphered;
    point->contentKnown = !own.enciphered;
    point->content = m_current.values();
    return true;
}

} // namespace NVB::Engine
