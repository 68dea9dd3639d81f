#pragma once

#include <QList>
#include <QRegularExpression>
#include <QStringList>

namespace NVB::Engine {

// Which files of a file plan's sources a run takes: the included paths less
// the excluded ones, then the plan's filters.
class FileSelection
{
public:
    enum class FilterType { All = 0, OnlyListed = 1, AllButListed = 2 };

    FileSelection(const QStringList& items, const QStringList& excludeItems, FilterType filterType,
                  const QStringList& filter, const QStringList& excludeFolderList, bool excludeHidden);

    // The included paths, cleaned, without those that lie below another.
    QStringList roots() const { return m_roots; }

    bool isExcludedPath(const QString& path) const;
    // A folder by its name (the excluded folder patterns, hidden folders).
    bool skipsFolder(const QString& name) const;
    // A file by its name (the type filter, hidden files).
    bool takesFile(const QString& name) const;

private:
    static QRegularExpression patternFor(const QString& typePattern);

    QStringList m_roots;
    QStringList m_excluded;
    FilterType m_filterType;
    QList<QRegularExpression> m_filter;
    QList<QRegularExpression> m_folderPatterns;
    bool m_excludeHidden;
};

} // namespace NVB::Engine
