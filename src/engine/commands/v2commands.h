#pragma once

#include "v2handler.h"

namespace NVB::Engine {

class Engine;

// The engine's V2 commands, by command id: connections and plans.
class V2Commands
{
public:
    static void add(Engine* engine, V2Handlers* handlers);

    // A plan as V2 lists carry it: the list entry's fields and the document.
    static QJsonObject planObject(const QJsonObject& summary, const QString& xml);
};

} // namespace NVB::Engine
