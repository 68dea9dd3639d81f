#include "retentionplanner.h"

#include <QSet>

namespace NVB::Engine {

namespace {

struct Version
{
    QString object;
    QDateTime backupUtc; // the run that stored it
    QDateTime modifiedUtc;
    QList<qint64> points; // every point that names it
};

} // namespace

RetentionPlanner::Result RetentionPlanner::plan(const QList<Point>& points, const RetentionRules& rules,
    const QDateTime& now, const QHash<QString, QString>& baseOf)
{
    Result result;
    if (points.size() < 2 || rules.isEmpty())
        return result;

    // Versions of each path, oldest first, and where each path was last seen.
    QHash<QString, QList<Version>> versions;
    QHash<QString, int> lastSeen;
    for (int index = 0; index < points.size(); ++index) {
        const Point& entry = points.at(index);
        for (const StoredContent& item : entry.content) {
            if (item.type != StoredContent::File || item.object.isEmpty())
                continue;
            lastSeen[item.path] = index;
            QList<Version>& list = versions[item.path];
            auto found = std::find_if(
                list.begin(), list.end(), [&item](const Version& version) { return version.object == item.object; });
            if (found == list.end()) {
                list.append(Version {item.object, entry.point.startUtc, item.modifiedUtc, {}});
                found = list.end() - 1;
            }
            found->points.append(entry.point.rowId);
        }
    }

    const int newest = points.size() - 1;
    QSet<QString> protectedObjects;
    for (const StoredContent& item : points.at(newest).content)
        protectedObjects.insert(item.object);

    QHash<qint64, int> filesLeft;
    for (const Point& entry : points) {
        int files = 0;
        for (const StoredContent& item : entry.content)
            files += item.type == StoredContent::File ? 1 : 0;
        filesLeft.insert(entry.point.rowId, files);
    }

    QList<QPair<QString, const Version*>> expiring;
    QSet<QString> needed; // full versions a kept increment applies to
    for (auto it = versions.cbegin(); it != versions.cend(); ++it) {
        const QList<Version>& list = it.value();
        const int seen = lastSeen.value(it.key());
        // Gone from the source since the first run that no longer found it.
        const bool goneLongEnough = rules.deleteLocalyDays >= 0 && seen < newest
            && points.at(seen + 1).point.startUtc.addDays(rules.deleteLocalyDays) <= now;
        for (int age = 0; age < list.size(); ++age) {
            const Version& version = list.at(list.size() - 1 - age); // age 0: the newest version
            if (protectedObjects.contains(version.object)) {
                if (baseOf.contains(version.object))
                    needed.insert(baseOf.value(version.object));
                continue;
            }
            bool expired = goneLongEnough;
            if (rules.keepVersions > 0 && age >= rules.keepVersions)
                expired = true;
            if (rules.ageDays >= 0 && !(rules.keepLast && age == 0)) {
                const QDateTime from = rules.useBackupDate ? version.backupUtc : version.modifiedUtc;
                if (from.isValid() && from.addDays(rules.ageDays) < now)
                    expired = true;
            }
            if (expired)
                expiring.append({it.key(), &version});
            else if (baseOf.contains(version.object))
                needed.insert(baseOf.value(version.object));
        }
    }
    for (const auto& [path, version] : std::as_const(expiring)) {
        if (needed.contains(version->object))
            continue;
        ++result.versions;
        result.objects.append(version->object);
        for (qint64 point : version->points) {
            result.pathsByPoint[point].append(path);
            --filesLeft[point];
        }
    }

    for (int index = 0; index < newest; ++index) {
        const qint64 row = points.at(index).point.rowId;
        if (filesLeft.value(row) <= 0 && result.pathsByPoint.contains(row)) {
            result.points.append(row);
            result.pathsByPoint.remove(row);
        }
    }
    return result;
}

} // namespace NVB::Engine
