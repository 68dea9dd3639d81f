#pragma once

#include <functional>

#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <QUuid>

#include "v1handler.h"
#include "v2handler.h"

namespace NVB::Engine {

class Engine;

// Answers the console's requests: checks each frame as the protocol says,
// finds the command's handler by name (V1) or id (V2) and wraps the outcome
// in a reply. A frame that cannot be answered (no id) is logged and dropped.
//
// Most commands answer at once; a few wait on the world outside (the
// certificate of a remote server) on a worker thread and answer later, so
// that one slow server never holds up the other consoles' requests.
class CommandRouter
{
public:
    using Replier = std::function<void(const QJsonObject& reply)>;

    explicit CommandRouter(Engine* engine);

    // Calls `reply` once with the reply frame, at once or (for the commands
    // that wait) later on this thread. False, and `reply` is never called,
    // when the frame has nothing to answer.
    bool handle(const QJsonObject& frame, const Replier& reply);
    // The reply frame, or an empty object when there is nothing to answer;
    // waits in a local event loop for a command that answers later.
    QJsonObject handle(const QJsonObject& frame);

    QStringList v1Commands() const;
    QList<QUuid> v2Commands() const;

private:
    bool handleV1(const QJsonObject& frame, const Replier& reply);
    QJsonObject handleV2(const QJsonObject& frame);

    V1Handlers m_v1;
    V1DeferredHandlers m_v1Deferred;
    V2Handlers m_v2;
};

} // namespace NVB::Engine
