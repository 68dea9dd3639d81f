#include <cstdint>
#include <cstdlib>

#include <QString>

#include "core/nvldebug.h"
#include "records/disk/diskinfo.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    NVL::NvlDebug::setLevel(NVL::LogLevel::Off);
    return 0;
}

// Reading a disk document must not crash, and what was read must survive a
// round trip unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString xml = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const auto info = NVB::Info::DiskInfo::createFromXml(xml);
    if (!info)
        return 0;
    const auto again = NVB::Info::DiskInfo::createFromXml(info->toXml());
    if (!again || *again != *info)
        std::abort();
    info->selectSystemRequired();
    info->setOptions(again);
    info->isAllDrivesSelected();
    return 0;
}
