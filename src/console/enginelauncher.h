#pragma once

#include <QString>

namespace NVB::Console {

// Makes sure an engine answers on the channel's socket: when none does, the
// console starts nvbengine from its own program folder, with the store in the
// user's data directory. The engine outlives the console.
class EngineLauncher
{
public:
    enum class Result { AlreadyRunning, Started, Failed };

    static Result ensureEngine(QString* message);
    static bool isAnswering(int timeoutMs = 300);
};

} // namespace NVB::Console
