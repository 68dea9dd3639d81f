#include "testenvironment.h"

#include <QDir>
#include <QtGlobal>

namespace NvbTest {

namespace {
TestEnvironment* g_current = nullptr;
}

TestEnvironment::TestEnvironment()
    : m_home(QDir::tempPath() + QStringLiteral("/nvbtest-XXXXXX"))
{
    qputenv("NVB_HOME", m_home.path().toUtf8());
    for (const char* name : {"NVB_CONFIG_DIR", "NVB_DATA_DIR", "NVB_LOG_DIR", "NVB_RUNTIME_DIR", "NVB_CACHE_DIR",
                             "NVB_EDITION", "NVB_REBRANDING_FILE"})
        qunsetenv(name);
    g_current = this;
}

TestEnvironment::~TestEnvironment()
{
    g_current = nullptr;
}

TestEnvironment* TestEnvironment::current()
{
    return g_current;
}

} // namespace NvbTest
