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

} // namespace NVB::Engine
