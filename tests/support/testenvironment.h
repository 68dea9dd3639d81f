#pragma once

#include <QString>
#include <QTemporaryDir>

namespace NvbTest {

// Points every directory of the installation into one temporary folder for the
// life of the test process, before any singleton reads a path.
class TestEnvironment
{
public:
    TestEnvironment();
    ~TestEnvironment();

    static TestEnvironment* current();
    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
};

} // namespace NvbTest
