#pragma once

#include <QJsonObject>

#include "v1handler.h"
#include "v2handler.h"

namespace NVB::Engine {

class Engine;

// Answers the console's requests: checks each frame as the protocol says,
// finds the command's handler by name (V1) or id (V2) and wraps the outcome
// in a reply. A frame that cannot be answered (no id) is logged and dropped.
class CommandRouter
{
public:
    explicit CommandRouter(Engine* engine);

    // The reply frame, or an empty object when there is nothing to answer.
    QJsonObject handle(const QJsonObject& frame);

private:
    QJsonObject handleV1(const QJsonObject& frame);
    QJsonObject handleV2(const QJsonObject& frame);

    V1Handlers m_v1;
    V2Handlers m_v2;
};

} // namespace NVB::Engine
