#pragma once

#include <functional>

#include <QCoreApplication>
#include <QObject>
#include <QSharedPointer>

#include "service/channelerrors.h"
#include "service/v2/command.h"

namespace NVB::Common::Communication::V2 {

// The checks every V2 result slot makes, in their order: status 3 throws the
// engine's text; status 5 on a list load arms a one-shot retry of the load
// after retryInterval() and gives null; any other status but 2 throws
// "Internal error"; a response of another type throws "Internal error:
// invalid command response format".
class CommandResult
{
    Q_DECLARE_TR_FUNCTIONS(CommandResult)
public:
    static constexpr int RetryInterval = 60000;

    // The retry wait: RetryInterval unless a test shortened it.
    static int retryInterval();
    static void setRetryIntervalForTesting(int ms);

    // Null only when a retry was armed (the timer is a child of context, so it
    // dies with it). Pass no reload for commands that do not load a list:
    // status 5 then counts as an internal error.
    template<typename Response>
    static QSharedPointer<Response> take(
        const Command* command, QObject* context = nullptr, std::function<void()> reload = {})
    {
        if (!checkStatus(command, context, std::move(reload)))
            return {};
        QSharedPointer<Response> response = qSharedPointerDynamicCast<Response>(command->response());
        if (!response)
            throw tr(Errors::InvalidResponseFormat);
        return response;
    }

private:
    // False when a retry was armed.
    static bool checkStatus(const Command* command, QObject* context, std::function<void()> reload);
};

} // namespace NVB::Common::Communication::V2
