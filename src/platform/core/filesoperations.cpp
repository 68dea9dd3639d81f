#include "filesoperations.h"

#include <QDomDocument>
#include <QFile>

#include "nvldebug.h"

namespace SHARED::functions::files_operations {

QString get_attrib_from_file(const QString& filePath, const QString& attribute)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug()
            << QStringLiteral("Cannot read %1: %2").arg(filePath, file.errorString());
        return {};
    }
    QDomDocument document;
    QString message;
    int line = 0;
    if (!document.setContent(&file, &message, &line)) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("%1 is not valid XML (line %2): %3").arg(filePath).arg(line).arg(message);
        return {};
    }
    return document.documentElement().attribute(attribute);
}

} // namespace SHARED::functions::files_operations
