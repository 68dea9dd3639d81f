#pragma once

#include <functional>

#include <QHash>
#include <QJsonObject>
#include <QString>

#include "core/outcome.h"

namespace NVB::Engine {

// A V1 command's handler: the request's "params" in, the reply's "data" or
// the error text out.
using V1Handler = std::function<Outcome(const QJsonObject& params)>;
using V1Handlers = QHash<QString, V1Handler>;

// A command that waits on something outside the engine (a remote server) and
// must not hold up the thread that serves every console: it gets its params
// and a function to call once, on the serving thread, with the outcome.
using V1Done = std::function<void(const Outcome& outcome)>;
using V1DeferredHandler = std::function<void(const QJsonObject& params, V1Done done)>;
using V1DeferredHandlers = QHash<QString, V1DeferredHandler>;

} // namespace NVB::Engine
