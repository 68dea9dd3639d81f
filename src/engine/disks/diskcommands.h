#pragma once

#include "commands/v1handler.h"

namespace NVB::Engine {

class Engine;

// The engine's V1 disk commands: the machine's disks.
class DiskCommands
{
public:
    static void add(Engine* engine, V1Handlers* handlers);
};

} // namespace NVB::Engine
