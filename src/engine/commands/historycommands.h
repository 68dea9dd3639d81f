#pragma once

#include "v1handler.h"

namespace NVB::Engine {

class Engine;

// The engine's V1 history commands, by wire name.
class HistoryCommands
{
public:
    static void add(Engine* engine, V1Handlers* handlers);
};

} // namespace NVB::Engine
