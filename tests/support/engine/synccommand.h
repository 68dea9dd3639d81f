#pragma once

#include <QJsonObject>
#include <QString>

namespace NvbTest {

// Sends one V1 command through the console's real channel and waits for its
// end, for tests that need a reply before they go on.
class SyncCommand
{
public:
    struct Result
    {
        bool answered = false; // complite() rather than error() or timeout()
        bool isError = false;  // the engine's status was "error"
        QString errorString;
        QJsonObject data;
    };

    static Result run(const QString& name, const QJsonObject& params = {}, int timeoutMs = 10000);
};

} // namespace NvbTest
