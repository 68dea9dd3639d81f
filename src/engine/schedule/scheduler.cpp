#include "scheduler.h"

#include <limits>

#include "records/plan/factory.h"
#include "schedulecalculator.h"
#include "store/enginestore.h"

namespace NVB::Engine {

Scheduler::Scheduler(EngineStore* store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Scheduler::onTimer);
}

void Scheduler::setClockForTest(std::function<QDateTime()> clock)
{
    m_clock = std::move(clock);
}

QDateTime Scheduler::now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTimeUtc();
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
    const QDateTime current = now();
    // A run missed while the engine was down: the schedule fired after the
    // last time it was seen to fire and before now.
    if (catchUp && plan->lastScheduledUtc.isValid()) {
        const QDateTime missed = ScheduleCalculator::nextRun(record->schedule(), plan->lastScheduledUtc);
        if (missed.isValid() && missed.toUTC() <= current) {
            // Passed over or caught up, the missed time is dealt with either way.
            m_store->setLastScheduled(planId, current);
            if (record->runMuissedPlan())
                QMetaObject::invokeMethod(this, [this, planId] { emit due(planId); }, Qt::QueuedConnection);
        }
    }
    const QDateTime next = ScheduleCalculator::nextRun(record->schedule(), current);
    if (next.isValid())
        m_next.insert(planId, next.toUTC());
    // Remember that the schedule was seen up to now, so that a plan saved
    // long ago does not count its whole past as missed.
    if (!plan->lastScheduledUtc.isValid())
        m_store->setLastScheduled(planId, current);
}

void Scheduler::arm()
{
    m_timer.stop();
    QDateTime soonest;
    for (const QDateTime& at : std::as_const(m_next)) {
        if (!soonest.isValid() || at < soonest)
            soonest = at;
    }
    if (!soonest.isValid())
        return;
    // Timers take int milliseconds; a run far ahead is re-armed on the way.
    const qint64 wait = qBound<qint64>(0, now().msecsTo(soonest), 24ll * 3600 * 1000);
    m_timer.start(int(wait));
}

void Scheduler::onTimer()
{
    const QDateTime current = now();
    const QList<QUuid> ids = m_next.keys();
    for (const QUuid& id : ids) {
        if (m_next.value(id) > current)
            continue;
        m_store->setLastScheduled(id, current);
        m_next.remove(id);
        compute(id, false);
        emit due(id);
    }
    arm();
}

} // namespace NVB::Engine
