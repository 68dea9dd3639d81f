#pragma once

#include <QApplication>
#include <QTest>

#include "testenvironment.h"

// QTEST_MAIN with the test's own temporary installation directories.
#define NVB_TEST_MAIN(TestObject)                                                                                 \
    int main(int argc, char* argv[])                                                                             \
    {                                                                                                             \
        NvbTest::TestEnvironment environment;                                                                    \
        QApplication app(argc, argv);                                                                             \
        app.setAttribute(Qt::AA_Use96Dpi, true);                                                                  \
        TestObject test;                                                                                          \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                   \
    }

// For tests that need no GUI.
#define NVB_TEST_GUILESS_MAIN(TestObject)                                                                         \
    int main(int argc, char* argv[])                                                                             \
    {                                                                                                             \
        NvbTest::TestEnvironment environment;                                                                    \
        QCoreApplication app(argc, argv);                                                                         \
        TestObject test;                                                                                          \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                   \
    }
