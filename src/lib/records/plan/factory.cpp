#include "factory.h"

#include "core/nvldebug.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "records/plan/restorediskimage.h"
#include "records/plan/restorefile.h"
#include "records/recordxml.h"

namespace NVB::Info::Plan {

namespace {

QSharedPointer<Base> emptyRecordFor(const QString& rootElement)
{
    const QList<QSharedPointer<Base>> kinds {QSharedPointer<BackupFile>::create(),
        QSharedPointer<BackupDiskImage>::create(), QSharedPointer<RestoreFile>::create(),
        QSharedPointer<RestoreDiskImage>::create()};
    for (const QSharedPointer<Base>& kind : kinds) {
        if (kind->rootElement() == rootElement)
            return kind;
    }
    return {};
}

} // namespace

QSharedPointer<Base> Factory::create(const QDomDocument& document)
{
    try {
        const QDomElement root = document.documentElement();
        if (root.isNull())
            throw QStringLiteral("Empty plan document");
        QSharedPointer<Base> plan = emptyRecordFor(root.tagName());
        if (!plan)
            throw QStringLiteral("Unknown plan document element <%1>").arg(root.tagName());
        RecordXml::version(root);
        plan->readFields(root);
        return plan;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

QSharedPointer<Base> Factory::create(const QString& xml)
{
    QDomDocument document;
    try {
        RecordXml::parseRoot(document, xml);
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
    return create(document);
}

} // namespace NVB::Info::Plan
