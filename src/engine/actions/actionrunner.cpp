#include "actionrunner.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

namespace NVB::Engine {

QStringList ActionRunner::split(const QString& commandLine)
{
    // QProcess::splitCommand has the rules the line editor's hint promises:
    // "/path/to/file" arg1 arg2.
    return QProcess::splitCommand(commandLine);
}

QString ActionRunner::Result::describe(const QString& role) const
{
    QString line;
    if (!started)
        line = QStringLiteral("%1 \"%2\" could not start: %3").arg(role, program, error);
    else if (timedOut)
        line = QStringLiteral("%1 \"%2\" was stopped after its time limit").arg(role, program);
    else if (stopped)
        line = QStringLiteral("%1 \"%2\" was stopped with the run").arg(role, program);
    else
        line = QStringLiteral("%1 \"%2\" exited with code %3").arg(role, program).arg(exitCode);
    const QString tail = outputTail.trimmed();
    if (!tail.isEmpty())
        line += QStringLiteral("; output: %1").arg(tail);
    return line;
}

ActionRunner::Result ActionRunner::run(const QString& commandLine, int timeLimitSeconds, const std::atomic_bool& stop)
{
    Result result;
    QStringList words = split(commandLine.trimmed());
    if (words.isEmpty()) {
        result.error = QStringLiteral("the command line is empty");
        return result;
    }
    result.program = words.takeFirst();
    const QFileInfo file(result.program);
    if (!file.isAbsolute()) {
        result.error = QStringLiteral("the program must be given by its full path");
        return result;
    }
    if (!file.exists()) {
        result.error = QStringLiteral("the file does not exist");
        return result;
    }
    if (!file.isFile() || !file.isExecutable()) {
        result.error = QStringLiteral("the file is not an executable program");
        return result;
    }

    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProgram(result.program);
    process.setArguments(words);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForStarted(10000)) {
        result.error = process.errorString();
        return result;
    }
    result.started = true;
    QString output;
    const auto collect = [&output, &process] {
        // With the size: the array form stops at the first NUL byte.
        const QByteArray bytes = process.readAll();
        output += QString::fromLocal8Bit(bytes.constData(), bytes.size());
        if (output.size() > 4 * OutputTailChars)
            output = output.right(OutputTailChars);
    };
    QElapsedTimer clock;
    clock.start();
    const qint64 limitMs = qint64(qMax(1, timeLimitSeconds)) * 1000;
    while (!process.waitForFinished(200)) {
        collect();
        if (process.state() == QProcess::NotRunning)
            break;
        if (stop || clock.elapsed() >= limitMs) {
            result.timedOut = !stop;
            result.stopped = bool(stop);
            process.kill();
            process.waitForFinished(5000);
            break;
        }
    }
    collect();
    result.outputTail = output.right(OutputTailChars);
    if (!result.timedOut && !result.stopped)
        result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    if (process.exitStatus() == QProcess::CrashExit && !result.timedOut && !result.stopped)
        result.error = QStringLiteral("the program crashed");
    return result;
}

} // namespace NVB::Engine
