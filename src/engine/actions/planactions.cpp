#include "planactions.h"

#include "actionrunner.h"
#include "core/nvldebug.h"
#include "records/plan/actions.h"
#include "records/plan/planresult.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

using NVB::Info::Plan::PlanResult;

namespace {

constexpr int DefaultTimeLimitSeconds = 3600;

QString commandLine(const NVB::Info::Plan::Action& action)
{
    // The wizard keeps the whole line in the program; older plans may carry
    // arguments apart.
    const QString arguments = action.arguments().trimmed();
    return arguments.isEmpty() ? action.program() : action.program() + QLatin1Char(' ') + arguments;
}

void addNote(RunOutcome* outcome, const QString& note)
{
    outcome->message = outcome->message.isEmpty() ? note : outcome->message + QStringLiteral("\n") + note;
}

bool succeeded(int result)
{
    return result == PlanResult::Success || result == PlanResult::Warning;
}

} // namespace

int PlanActions::timeLimitSeconds()
{
    const NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
    bool ok = false;
    const int seconds = settings ? settings->value(QStringLiteral("Action time limit")).toInt(&ok) : 0;
    return ok && seconds > 0 ? seconds : DefaultTimeLimitSeconds;
}

PlanActions::Work PlanActions::around(const NVB::Info::Plan::Actions& actions, Work work)
{
    const bool pre = actions.pre().isEnabled();
    const bool post = actions.post().isEnabled();
    if (!pre && !post)
        return work;
    const QString preLine = commandLine(actions.pre());
    const QString postLine = commandLine(actions.post());
    const bool terminate = actions.pre().terminateOnFailure();
    const bool always = actions.post().runOnBackupFailure();
    const int limit = timeLimitSeconds();
    return [=, work = std::move(work)](const std::atomic_bool& stop) {
        QString preNote;
        bool preFailed = false;
        if (pre) {
            const ActionRunner::Result result = ActionRunner::run(preLine, limit, stop);
            preNote = result.describe(QStringLiteral("Pre-backup action"));
            preFailed = !result.succeeded();
            if (preFailed)
                NVL::NvlDebug(QStringLiteral("NVB")).warning() << preNote;
        }
        RunOutcome outcome;
        if (preFailed && (terminate || stop)) {
            outcome.planResult = PlanResult::Failed;
            outcome.message = preNote;
        } else {
            outcome = work(stop);
            if (!preNote.isEmpty()) {
                outcome.message
                    = outcome.message.isEmpty() ? preNote : preNote + QStringLiteral("\n") + outcome.message;
                if (preFailed && outcome.planResult == PlanResult::Success)
                    outcome.planResult = PlanResult::Warning;
            }
        }
        if (post && (always || succeeded(outcome.planResult))) {
            // A stopped run has its flag set; the post-action must still get
            // its chance to clean up, so it runs on a flag of its own.
            static const std::atomic_bool never {false};
            const ActionRunner::Result result = ActionRunner::run(postLine, limit, never);
            const QString note = result.describe(QStringLiteral("Post-backup action"));
            addNote(&outcome, note);
            if (!result.succeeded()) {
                NVL::NvlDebug(QStringLiteral("NVB")).warning() << note;
                if (outcome.planResult == PlanResult::Success)
                    outcome.planResult = PlanResult::Warning;
            }
        }
        return outcome;
    };
}

} // namespace NVB::Engine
