// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa::test {

/// Makes every file system that this process reaches read-only, in a mount namespace of its own, but for one empty
/// folder, which becomes the folder for temporary files. What a test asks to be refused ("remove the root folder") can
/// then do no harm where it is not refused. Call it first in main(). False where the system does not allow it.
bool enterReadOnlyWorld();

/// Whether enterReadOnlyWorld() has succeeded. A test whose failure would cost somebody his files asks first.
[[nodiscard]] bool inReadOnlyWorld();

} // namespace lapsa::test

/// The main() of a test that asks for the removal of what must not be removed.
#define LAPSA_READ_ONLY_WORLD_MAIN(TestClass)                                                                          \
    int main(int argc, char* argv[])                                                                                   \
    {                                                                                                                  \
        lapsa::test::enterReadOnlyWorld();                                                                             \
        QCoreApplication application(argc, argv);                                                                      \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
