#include <cstdint>
#include <cstdlib>

#include <QString>

#include "core/nvldebug.h"
#include "records/plan/factory.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    NVL::NvlDebug::setLevel(NVL::LogLevel::Off);
    return 0;
}

// Whatever a plan document holds, reading must not crash, and a record that
// was read must write a document that reads back to the same text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString xml = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const auto plan = NVB::Info::Plan::Factory::create(xml);
    if (!plan)
        return 0;
    const QString written = plan->toXml();
    const auto again = NVB::Info::Plan::Factory::create(written);
    if (!again || again->toXml() != written)
        std::abort();
    return 0;
}
