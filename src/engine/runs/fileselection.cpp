#include "fileselection.h"

#include <algorithm>

#include <QDir>

namespace NVB::Engine {

namespace {

bool isBelowOrSame(const QString& path, const QString& root)
{
    if (root == QLatin1String("/"))
        return true;
    return path == root || (path.startsWith(root) && path.at(root.size()) == QLatin1Char('/'));
}

QStringList cleaned(const QStringList& paths)
{
    QStringList result;
    for (const QString& path : paths) {
        if (!path.trimmed().isEmpty())
            result.append(QDir::cleanPath(path));
    }
    return result;
}

} // namespace

FileSelection::FileSelection(const QStringList& items, const QStringList& excludeItems, FilterType filterType,
                             const QStringList& filter, const QStringList& excludeFolderList, bool excludeHidden)
    : m_excluded(cleaned(excludeItems))
    , m_filterType(filterType)
    , m_excludeHidden(excludeHidden)
{
    QStringList roots = cleaned(items);
    std::sort(roots.begin(), roots.end());
    for (const QString& root : roots) {
        const bool covered = std::any_of(m_roots.cbegin(), m_roots.cend(),
                                         [&root](const QString& kept) { return isBelowOrSame(root, kept); });
        if (!covered)
            m_roots.append(root);
    }
    for (const QString& pattern : filter) {
        if (!pattern.trimmed().isEmpty())
            m_filter.append(patternFor(pattern.trimmed()));
    }
    for (const QString& pattern : excludeFolderList) {
        if (!pattern.trimmed().isEmpty()) {
            m_folderPatterns.append(QRegularExpression(
                QRegularExpression::wildcardToRegularExpression(pattern.trimmed()),
                QRegularExpression::CaseInsensitiveOption));
        }
    }
}

QRegularExpression FileSelection::patternFor(const QString& typePattern)
{
    // "txt", ".txt" and "*.txt" all mean files of that type; anything with
    // a wildcard elsewhere is taken as the user wrote it.
    QString wildcard = typePattern;
    if (!wildcard.contains(QLatin1Char('*')) && !wildcard.contains(QLatin1Char('?')))
        wildcard = QStringLiteral("*.") + (wildcard.startsWith(QLatin1Char('.')) ? wildcard.mid(1) : wildcard);
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(wildcard),
                              QRegularExpression::CaseInsensitiveOption);
}

bool FileSelection::isExcludedPath(const QString& path) const
{
    return std::any_of(m_excluded.cbegin(), m_excluded.cend(),
                       [&path](const QString& excluded) { return isBelowOrSame(path, excluded); });
}

bool FileSelection::skipsFolder(const QString& name) const
{
    if (m_excludeHidden && name.startsWith(QLatin1Char('.')))
        return true;
    return std::any_of(m_folderPatterns.cbegin(), m_folderPatterns.cend(),
                       [&name](const QRegularExpression& pattern) { return pattern.match(name).hasMatch(); });
}

bool FileSelection::takesFile(const QString& name) const
{
    if (m_excludeHidden && name.startsWith(QLatin1Char('.')))
        return false;
    if (m_filterType == FilterType::All || m_filter.isEmpty())
        return true;
    const bool listed = std::any_of(m_filter.cbegin(), m_filter.cend(),
                                    [&name](const QRegularExpression& pattern) { return pattern.match(name).hasMatch(); });
    return m_filterType == FilterType::OnlyListed ? listed : !listed;
}

} // namespace NVB::Engine
