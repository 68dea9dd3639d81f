#pragma once

#include <atomic>

#include <QString>
#include <QStringList>

namespace NVB::Engine {

// Runs one command of a plan: the program and its arguments straight, with
// no shell between, so nothing in the line is expanded or chained. Output of
// both channels is kept, its tail only, for the run's history.
class ActionRunner
{
public:
    struct Result
    {
        bool started = false;
        bool timedOut = false;
        bool stopped = false;
        int exitCode = -1;
        QString program;
        // The last OutputTailChars characters the command wrote.
        QString outputTail;
        // Why it could not start, when it did not.
        QString error;

        bool succeeded() const { return started && !timedOut && !stopped && exitCode == 0; }
        // One line for the history: what ran and how it ended.
        QString describe(const QString& role) const;
    };

    static constexpr int OutputTailChars = 2000;

    // The words of a command line: double quotes group words with blanks
    // and are removed; a quote inside quotes is written twice ("").
    static QStringList split(const QString& commandLine);

    // Blocks until the command ends, the time limit passes (the command is
    // killed) or `stop` is set.
    static Result run(const QString& commandLine, int timeLimitSeconds, const std::atomic_bool& stop);
};

} // namespace NVB::Engine
