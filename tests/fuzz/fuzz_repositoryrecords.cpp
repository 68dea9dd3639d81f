#include <cstdint>

#include "core/nvldebug.h"
#include "repositoryrecordsfuzz.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    NVL::NvlDebug::setLevel(NVL::LogLevel::Off);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    RepositoryRecordsFuzz::feed(QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}
