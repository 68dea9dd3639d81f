#pragma once

#include <atomic>
#include <optional>
#include <thread>

#include "runs/runprogress.h"
#include "walk/sourcewalk.h"

namespace NVB::Engine {

class FileSelection;

// Counts the files and bytes a run will take, so that progress can be told
// as a share of the whole and a time left. It runs on a thread of its own
// beside the run instead of before it: the run need not walk the tree twice
// before it copies anything, and on a tree that did not change the count
// costs no wall time. It reads only names and sizes.
class TransferScan : private SourceWalk::Visitor
{
public:
    struct Totals
    {
        qint64 count = 0;
        qint64 size = 0;
    };

    // `selection` must outlive the scan.
    TransferScan(const FileSelection& selection, SourceWalk::Options options);
    // Ends a count still running, at its next item.
    ~TransferScan() override;
    TransferScan(const TransferScan&) = delete;
    TransferScan& operator=(const TransferScan&) = delete;

    // Starts counting; `stop` ends the count as it ends the run. With the
    // totals of the plan's last run, nothing is counted: a run that follows
    // a restore point mostly meets the tree that point saw, and a second
    // walk of it would cost as much as the run's own. The share done is then
    // told against those totals, raised by whatever the run sees beyond them.
    void start(const std::atomic_bool& stop, std::optional<Totals> expected = std::nullopt);
    // The totals once the whole selection is counted.
    std::optional<Totals> totals() const;
    // Puts the totals into `progress` once they are known. At the run's end
    // (`ended`) a count not yet finished is of no use any more: the run's own
    // figures are the totals.
    void fill(RunProgress* progress, bool ended) const;

private:
    bool stopped() const override;
    void failed(const QString&, const QString&) override { } // the run reports what it cannot read
    void file(const QString& path, const struct stat& info, bool followedLink) override;
    void link(const QString&, const struct stat&, const QString&) override { }
    void enterFolder(const QString&, const struct stat&, bool) override { }
    void leaveFolder(const QString&, const struct stat&, bool) override { }

    SourceWalk m_walk;
    const std::atomic_bool* m_stop = nullptr;
    std::atomic_bool m_cancel {false};
    std::atomic_bool m_done {false};
    Totals m_totals;
    std::optional<Totals> m_expected;
    std::thread m_thread;
};

} // namespace NVB::Engine
