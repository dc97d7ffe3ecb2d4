#pragma once

#include "app/mapplication.h"

#include <QtTest>

namespace QuillmereTest {

// Points HOME, TMPDIR and the XDG directories of this process into a fresh
// temporary directory and turns on the test mode of QStandardPaths, so that no
// test reads or writes the user's real settings and data. Call before the
// application object exists.
void isolateEnvironment();

// The temporary home made by isolateEnvironment.
QString temporaryHome();

// The environment a child process should get to share this test's isolation.
QProcessEnvironment childEnvironment();

} // namespace QuillmereTest

// A test main that isolates the process and sets up OpenGL as the program does,
// so that every context is a shared 3.3 core one.
#define QUILLMERE_TEST_MAIN(TestObject)                                                                      \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        QuillmereTest::isolateEnvironment();                                                                 \
        MApplication::prepareProcess();                                                                      \
        QApplication app(argc, argv);                                                                        \
        QCoreApplication::setOrganizationName(QStringLiteral("Tarnbeck"));                                   \
        QCoreApplication::setApplicationName(QStringLiteral("Quillmere"));                                   \
        TestObject test;                                                                                     \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
