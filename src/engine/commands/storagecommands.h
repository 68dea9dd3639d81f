#pragma once

#include "v1handler.h"

namespace NVB::Engine {

class Engine;

// The engine's V1 storage commands, by wire name.
class StorageCommands
{
public:
    static void add(Engine* engine, V1Handlers* handlers);
};

} // namespace NVB::Engine
