#include <cstdint>

#include "archiverecordsfuzz.h"
#include "core/nvldebug.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    NVL::NvlDebug::setLevel(NVL::LogLevel::Off);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ArchiveRecordsFuzz::feedIndex(QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}
