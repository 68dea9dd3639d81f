#include "commandresult.h"

#include <QTimer>

#include "core/nvldebug.h"

namespace NVB::Common::Communication::V2 {

namespace {
int g_retryInterval = CommandResult::RetryInterval;
}

int CommandResult::retryInterval()
{
    return g_retryInterval;
}

void CommandResult::setRetryIntervalForTesting(int ms)
{
    g_retryInterval = ms > 0 ? ms : RetryInterval;
}

bool CommandResult::checkStatus(const Command* command, QObject* context, std::function<void()> reload)
{
    if (!command)
        throw tr(Errors::Internal);
    if (command->status() == Command::Error)
        throw command->errorMessage();
    if (command->status() == Command::NeedRetry && reload) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QString::fromLatin1(Errors::NeedRetry);
        auto* timer = new QTimer(context);
        timer->setSingleShot(true);
        timer->setInterval(retryInterval());
        QObject::connect(timer, &QTimer::timeout, timer, [timer, reload = std::move(reload)] {
            timer->deleteLater();
            reload();
        });
        timer->start();
        return false;
    }
    if (command->status() != Command::Success)
        throw tr(Errors::Internal);
    return true;
}

} // namespace NVB::Common::Communication::V2
