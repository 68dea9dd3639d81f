#pragma once

#include <functional>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <QUuid>

namespace NVB::Engine {

class EngineStore;

// Fires plans at their scheduled times. Keeps the next run of every plan with
// an enabled schedule (and, for backups, the next forced full run) and looks
// at the real-time clock at least once a minute: a monotonic timer armed for
// hours stands still while the machine sleeps and knows nothing of the clock
// being set, so it would fire late.
//
// A time found more than a couple of minutes in the past, at start or on any
// later look (the machine slept, the clock jumped), is a missed run: the plan
// runs once for it when it asks to (`runMuissedPlan`), else the time is
// passed over.
class Scheduler : public QObject
{
    Q_OBJECT

public:
    // Longest wait between two looks at the clock.
    static constexpr int CheckIntervalMs = 60 * 1000;
    // How late a time may be found and still count as on time.
    static constexpr int GraceSeconds = 120;

    explicit Scheduler(EngineStore* store, QObject* parent = nullptr);

    // Reads every plan; at the engine's start, with `catchUp`, plans that
    // missed a run and want it are reported due at once.
    void reload(bool catchUp);
    void update(const QUuid& planId);
    void remove(const QUuid& planId);

    // In UTC: the sooner of the plan's next run and next forced full run;
    // invalid when the plan has neither.
    QDateTime nextRun(const QUuid& planId) const;

    // Looks at the clock: reports what is due and what was missed. The timer
    // calls it; tests call it after moving their clock.
    void check();
    // Milliseconds until the next look at the clock; -1 when nothing waits.
    int msUntilNextCheck() const { return m_timer.isActive() ? m_timer.remainingTime() : -1; }

    // For tests: what "now" is.
    void setClockForTest(std::function<QDateTime()> clock);

signals:
    // `forceFull` when the plan's full schedule is (also) due.
    void due(const QUuid& planId, bool forceFull);

private:
    struct Next
    {
        QDateTime regular; // UTC
        QDateTime full; // UTC
        bool runMissed = false;
    };

    QDateTime now() const;
    void compute(const QUuid& planId, bool catchUp);
    void arm();

    EngineStore* m_store;
    QHash<QUuid, Next> m_next;
    QTimer m_timer;
    std::function<QDateTime()> m_clock;
};

} // namespace NVB::Engine
