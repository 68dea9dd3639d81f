#pragma once

#include <QSharedPointer>
#include <QStringList>
#include <QTemporaryFile>

namespace NVB::Common::History {

// Turns the CSV lines the engine sends into a file the user can save.
class ExportAsCSV
{
public:
    // A header line, then the lines as given, UTF-8 with CRLF line ends as
    // spreadsheets expect. Null when the temporary file cannot be written.
    static QSharedPointer<QTemporaryFile> preparePlanExport(const QStringList& lines);
    static QSharedPointer<QTemporaryFile> prepareFileExport(const QStringList& lines);
};

} // namespace NVB::Common::History
