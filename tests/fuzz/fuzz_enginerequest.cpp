#include <cstdint>

#include <QCoreApplication>

#include "core/nvldebug.h"
#include "enginerequestfuzz.h"

namespace {

EngineRequestFuzz* fuzz = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    NVL::NvlDebug::setLevel(NVL::LogLevel::Off);
    // Timers of the scheduler want an application object, even unrun.
    new QCoreApplication(*argc, *argv);
    fuzz = new EngineRequestFuzz;
    return 0;
}

// One command with arbitrary arguments, or an arbitrary frame, into the
// engine's router: no crash, no undefined behaviour, and an answer for
// every request that carries an id.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz->feed(QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}
