#include "pointtreereader.h"

#include <QCryptographicHash>

#include "chunktransform.h"
#include "repository.h"
#include "storage/storagedriver.h"

namespace NVB::Engine {

PointTreeReader::PointTreeReader(const Repository* repository, const ChunkTransform* transform)
    : m_repository(repository)
    , m_transform(transform)
{ }

QString PointTreeReader::open(const QUuid& generation, int sequence)
{
    m_key = m_repository->treeKey(generation, sequence);
    const StorageRead read = m_repository->driver()->read(m_key);
    const TransformResult plain = read.ok() ? m_transform->decode(read.data) : TransformResult {read.error, {}};
    QString problem = plain.error;
    if (plain.ok() && TreePart::isRoot(plain.data)) {
        m_version = 2;
        problem = TreePart::parseRoot(plain.data, &m_root);
        m_header.generation = m_root.generation;
        m_header.sequence = m_root.sequence;
        m_header.startUtc = m_root.startUtc;
        m_header.planName = m_root.planName;
    } else if (plain.ok()) {
        // An older engine's tree: one object, read whole once, and listed
        // as the writer lists a new one.
        m_version = 1;
        problem = PointTree::parse(plain.data, &m_header);
        m_entries = std::move(m_header.entries);
        m_header.entries.clear();
        m_loaded = 0;
        m_root.parts.append(TreeRoot::Part {int(m_entries.size()), {}});
        QString last;
        for (int n = 0; n < m_entries.size(); ++n) {
            const QString folder = TreePart::groupOf(m_entries.at(n).item);
            if (n == 0 || folder != last)
                m_root.listings.append(TreeRoot::Listing {folder, 0, n});
            last = folder;
        }
    }
    if (!problem.isEmpty())
        return QStringLiteral("The restore point's tree %1 cannot be read: %2").arg(m_key, problem);
    for (int n = 0; n < m_root.listings.size(); ++n)
        m_byFolder[m_root.listings.at(n).folder].append(n);
    return {};
}

QString PointTreeReader::loadPart(int part)
{
    if (part == m_loaded)
        return {};
    m_entries.clear();
    m_loaded = -1;
    const QString key = m_repository->partKey(m_root.generation, m_root.sequence, m_root.writer, part);
    const StorageRead read = m_repository->driver()->read(key);
    const TransformResult plain = read.ok() ? m_transform->decode(read.data) : TransformResult {read.error, {}};
    QString problem = plain.error;
    const TreeRoot::Part& expected = m_root.parts.at(part);
    if (plain.ok() && QCryptographicHash::hash(plain.data, QCryptographicHash::Sha256) != expected.sha256)
        problem = QStringLiteral("it is not the part its root names");
    if (problem.isEmpty())
        problem = TreePart::parse(plain.data, expected.count, &m_entries);
    if (!problem.isEmpty()) {
        m_entries.clear();
        return QStringLiteral("The restore point's tree %1 cannot be read: its part %2 %3").arg(m_key, key, problem);
    }
    m_loaded = part;
    return {};
}

QVector<TreeEntry> PointTreeReader::listing(const QString& folder, QString* error)
{
    QVector<TreeEntry> found;
    for (int start : m_byFolder.value(folder)) {
        int part = m_root.listings.at(start).part;
        int index = m_root.listings.at(start).index;
        for (;;) {
            const QString problem = loadPart(part);
            if (!problem.isEmpty()) {
                *error = problem;
                return {};
            }
            while (index < m_entries.size() && TreePart::inGroup(m_entries.at(index).item, folder))
                found.append(m_entries.at(index++));
            // A listing may run on into the next part.
            if (index < m_entries.size() || ++part >= m_root.parts.size())
                break;
            index = 0;
        }
    }
    return found;
}

QStringList PointTreeReader::folders() const
{
    QStringList result;
    result.reserve(m_byFolder.size());
    for (const TreeRoot::Listing& listing : m_root.listings) {
        // A folder listed in several places is named at its first.
        if (m_byFolder.value(listing.folder).constFirst() == int(&listing - m_root.listings.constData()))
            result.append(listing.folder);
    }
    return result;
}

QString PointTreeReader::forEach(const std::function<bool(const TreeEntry&)>& take)
{
    for (int part = 0; part < m_root.parts.size(); ++part) {
        const QString problem = loadPart(part);
        if (!problem.isEmpty())
            return problem;
        for (const TreeEntry& entry : std::as_const(m_entries)) {
            if (!take(entry))
                return {};
        }
    }
    return {};
}

} // namespace NVB::Engine
