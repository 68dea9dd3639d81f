#pragma once

#include <atomic>
#include <functional>

#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <QUuid>

#include "runprogress.h"
#include "store/runfilerecord.h"
#include "store/storedcontent.h"

namespace NVB::Engine {

class FolderHandle;

// A verify run of a backup plan: reads every object of a restore point back
// from the storage and compares its size and SHA-256 with what the store
// recorded when it was copied. Every mismatch becomes a failed file of the
// run, named in the history; nothing is written anywhere.
class FileVerifyJob
{
public:
    struct Parameters
    {
        QUuid planId;
        QString planName;
        QString storageRoot;
        QList<StoredContent> content;
        QString password; // opens enciphered objects
    };

    struct Result
    {
        int planResult = 0;
        QString message;
        QList<RunFileRecord> files;
        RunProgress totals;
    };

    using ProgressHandler = std::function<void(const RunProgress&)>;

    explicit FileVerifyJob(Parameters parameters);

    Result run(const std::atomic_bool& stop, const ProgressHandler& progress);

private:
    enum class Verdict { Whole, SizeOnly, Broken };
    // What is wrong with the object goes to *problem.
    Verdict check(
        const FolderHandle& storage, const StoredContent& file, const std::atomic_bool& stop, QString* problem);

    Parameters m_parameters;
    Result m_result;
};

} // namespace NVB::Engine
