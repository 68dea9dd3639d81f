#include "exportascsv.h"

#include <QDir>

namespace NVB::Common::History {

namespace {

// The columns follow the engine's CSV lines field for field.
QSharedPointer<QTemporaryFile> write(const QString& header, const QStringList& lines)
{
    auto file = QSharedPointer<QTemporaryFile>::create(QDir::tempPath() + QStringLiteral("/history-XXXXXX.csv"));
    if (!file->open())
        return {};
    QByteArray bytes = header.toUtf8() + "\r\n";
    for (const QString& line : lines)
        bytes += line.toUtf8() + "\r\n";
    if (file->write(bytes) != bytes.size() || !file->flush())
        return {};
    file->seek(0);
    return file;
}

} // namespace

QSharedPointer<QTemporaryFile> ExportAsCSV::preparePlanExport(const QStringList& lines)
{
    return write(QStringLiteral("\"Plan\",\"Start time (UTC)\",\"Duration (s)\",\"Result\",\"Files\",\"Size\","
                                "\"Error message\""),
        lines);
}

QSharedPointer<QTemporaryFile> ExportAsCSV::prepareFileExport(const QStringList& lines)
{
    return write(QStringLiteral("\"Plan\",\"File\",\"Operation\",\"Size\",\"Finish time (UTC)\","
                                "\"Date modified (UTC)\",\"Message\""),
        lines);
}

} // namespace NVB::Common::History
