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
// an enabled schedule and one timer for the soonest; a plan whose time came
// while the engine was down runs once at start when it asks to.
class Scheduler : public QObject
{
    Q_OBJECT

public:
    explicit Scheduler(EngineStore* store, QObject* parent = nullptr);

    // Reads every plan; at the engine's start, with `catchUp`, plans that
    // missed a run and want it are reported due at once.
    void reload(bool catchUp);
    void update(const QUuid& planId);
    void remove(const QUuid& planId);

    // In UTC; invalid when the plan has no next run.
    QDateTime nextRun(const QUuid& planId) const { return m_next.value(planId); }

    // For tests: what "now" is.
    void setClockForTest(std::function<QDateTime()> clock);

signals:
    void due(const QUuid& planId);

private slots:
    void onTimer();

private:
    QDateTime now() const;
    void compute(const QUuid& planId, bool catchUp);
    void arm();

    EngineStore* m_store;
    QHash<QUuid, QDateTime> m_next;
    QTimer m_timer;
    std::function<QDateTime()> m_clock;
};

} // namespace NVB::Engine
