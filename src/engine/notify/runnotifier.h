#pragma once

#include <atomic>
#include <functional>

#include <QDateTime>

#include "runs/runoutcome.h"

namespace NVB::Info::Plan {
class Base;
}

namespace NVB::Engine {

// Mails the user about a finished run, as the plan's notification asks:
// never, when the run fails (failed or interrupted), or in all cases. The
// subject's "%COMPUTER_NAME%", "%RESULT%" and "%PLAN_NAME%" are replaced;
// the body says what ran and how it ended, and a detailed report of the
// files is attached when the plan asks for one. Addresses come from the
// setting "Notification email" (";" or "," between several).
//
// A mail that cannot be sent is logged and noted in the run's message; the
// run's result stays what it was.
class RunNotifier
{
public:
    using Work = std::function<RunOutcome(const std::atomic_bool&)>;

    static Work around(const NVB::Info::Plan::Base& plan, Work work);

    // Whether a run with this result sends mail under the notification type.
    static bool wanted(int notificationType, int planResult);
    static QString expand(const QString& text, const QString& planName, int planResult);
    static QByteArray compose(const QString& from, const QStringList& to, const QString& subject, const QString& body,
        const QByteArray& report);
};

} // namespace NVB::Engine
