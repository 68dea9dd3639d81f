#include "scheduler.h"

#include "core/nvldebug.h"
#include "records/plan/backup.h"
#include "records/plan/factory.h"
#include "schedulecalculator.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace {

QDateTime sooner(const QDateTime& a, const QDateTime& b)
{
    if (!a.isValid())
        return b;
    if (!b.isValid())
        return a;
    return qMin(a, b);
}

bool isDue(const QDateTime& at, const QDateTime& current)
{
    return at.isValid() && at <= current;
}

} // namespace

Scheduler::Scheduler(EngineStore* store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
    m_timer.setSingleShot(true);
    // A coarse timer may fire 5% late, beyond the minute promised.
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Scheduler::check);
}

void Scheduler::setClockForTest(std::function<QDateTime()> clock)
{
    m_clock = std::move(clock);
}

QDateTime Scheduler::now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTimeUtc();
}

QDateTime Scheduler::nextRun(const QUuid& planId) const
{
    const Next next = m_next.value(planId);
    return sooner(next.regular, next.full);
}

void Scheduler::reload(bool catchUp)
{
    m_next.clear();
    for (const StoredPlan& plan : m_store->plans())
        compute(plan.id, catchUp);
    arm();
}

void Scheduler::update(const QUuid& planId)
{
    m_next.remove(planId);
    compute(planId, false);
    arm();
}

void Scheduler::remove(const QUuid& planId)
{
    m_next.remove(planId);
    arm();
}

void Scheduler::compute(const QUuid& planId, bool catchUp)
{
    const auto plan = m_store->plan(planId);
    if (!plan)
        return;
    const auto record = NVB::Info::Plan::Factory::create(plan->xml);
    if (!record)
        return;
    const auto* backup = dynamic_cast<const NVB::Info::Plan::Backup*>(record.data());
    const QDateTime current = now();
    // A run missed while the engine was down: a schedule fired after the
    // last time it was seen to fire and before now.
    if (catchUp && plan->lastScheduledUtc.isValid()) {
        const QDateTime missed = ScheduleCalculator::nextRun(record->schedule(), plan->lastScheduledUtc);
        const QDateTime missedFull
            = backup ? ScheduleCalculator::nextRun(backup->forceFullSchedule(), plan->lastScheduledUtc) : QDateTime();
        const bool full = isDue(missedFull.toUTC(), current);
        if (isDue(missed.toUTC(), current) || full) {
            // Passed over or caught up, the missed time is dealt with either way.
            m_store->setLastScheduled(planId, current);
            if (record->runMuissedPlan())
                QMetaObject::invokeMethod(
                    this, [this, planId, full] { emit due(planId, full); }, Qt::QueuedConnection);
        }
    }
    Next next;
    next.regular = ScheduleCalculator::nextRun(record->schedule(), current).toUTC();
    if (backup)
        next.full = ScheduleCalculator::nextRun(backup->forceFullSchedule(), current).toUTC();
    next.runMissed = record->runMuissedPlan();
    if (next.regular.isValid() || next.full.isValid())
        m_next.insert(planId, next);
    // Remember that the schedule was seen up to now, so that a plan saved
    // long ago does not count its whole past as missed.
    if (!plan->lastScheduledUtc.isValid())
        m_store->setLastScheduled(planId, current);
}

void Scheduler::arm()
{
    m_timer.stop();
    QDateTime soonest;
    for (const Next& next : std::as_const(m_next))
        soonest = sooner(soonest, sooner(next.regular, next.full));
    if (!soonest.isValid())
        return;
    const qint64 wait = qBound<qint64>(0, now().msecsTo(soonest), CheckIntervalMs);
    m_timer.start(int(wait));
}

void Scheduler::check()
{
    const QDateTime current = now();
    const QList<QUuid> ids = m_next.keys();
    for (const QUuid& id : ids) {
        const Next next = m_next.value(id);
        const bool regular = isDue(next.regular, current);
        const bool full = isDue(next.full, current);
        if (!regular && !full)
            continue;
        const QDateTime at = regular && full ? qMin(next.regular, next.full) : regular ? next.regular : next.full;
        const bool late = at.secsTo(current) > GraceSeconds;
        m_store->setLastScheduled(id, current);
        m_next.remove(id);
        compute(id, false);
        if (late && !next.runMissed) {
            NVL::NvlDebug(QStringLiteral("NVB")).info()
                << QStringLiteral("The run of plan %1 due at %2 was missed (the machine slept or the clock moved); "
                                  "the plan does not ask for missed runs")
                       .arg(id.toString(), at.toString(Qt::ISODate));
            continue;
        }
        emit due(id, full);
    }
    arm();
}

} // namespace NVB::Engine
