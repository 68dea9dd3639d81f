#pragma once

#include <functional>

#include <QFutureWatcher>
#include <QMap>
#include <QObject>
#include <QUuid>
#include <QVariant>

#include "canceltoken.h"
#include "operationresult.h"

namespace NVL::Cloud {

class ProviderClient;

// One asynchronous request to a storage provider. It is made by
// OperationManager, which keeps it until remove(). run() hands the job to a
// worker thread; finished() is emitted on the thread that owns the operation
// (the GUI thread) once the answer is in. remove() must be called exactly once
// when the owner is done with it, also to cancel: after remove() a running job
// is abandoned, its answer is dropped and finished() is not emitted.
class IOperation : public QObject
{
    Q_OBJECT

public:
    enum State { Created = 0, Running = 1, Cancelled = 2, Finished = 3, Failed = 4 };

    ~IOperation() override;

    virtual void run();
    void remove();

    bool isComplite() const { return m_state == Finished || m_state == Failed; }
    bool isError() const { return m_errorCode != OperationError::NoError; }
    int errorCode() const { return m_errorCode; }
    QString errorMessage() const { return m_errorMessage; }
    int state() const { return m_state; }
    QString type() const { return m_type; }
    QUuid id() const { return m_id; }
    bool isRemoved() const { return m_removed; }
    QMap<QString, QVariant> cloudConfig() const { return m_config; }

signals:
    void finished();

protected:
    // What the worker runs. It gets the provider's client, a copy of the
    // configuration and the cancel token, and must not touch the operation:
    // capture parameters by value.
    using Job = std::function<OperationResult(ProviderClient&, const QMap<QString, QVariant>&, const CancelToken&)>;

    IOperation(const QString& type, const QMap<QString, QVariant>& config);

    virtual Job job() const = 0;
    // Takes the operation's own data from a successful answer.
    virtual void takeResult(const OperationResult& result);

private slots:
    void onWorkDone();

private:
    void finish(const OperationResult& result);

    QString m_type;
    QUuid m_id;
    QMap<QString, QVariant> m_config;
    State m_state = Created;
    int m_errorCode = OperationError::NoError;
    QString m_errorMessage;
    bool m_removed = false;
    CancelToken m_cancel;
    QFutureWatcher<OperationResult>* m_watcher = nullptr;
};

} // namespace NVL::Cloud
