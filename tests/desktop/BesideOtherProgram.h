// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QRect>
#include <QString>
#include <QTest>
#include <QWidget>

// What the tests of the program's windows beside those of other programs share.

namespace lapsa::test {

constexpr int patience = 30'000;
/// Where the window of the other program is.
constexpr QRect otherPlace(20, 700, 200, 200);

/// Lets a while pass in which something that must not happen could happen.
inline void letThingsSettle()
{
    QElapsedTimer elapsed;
    elapsed.start();
    QTRY_VERIFY(elapsed.elapsed() > 600);
}

/// Only a window manager tells which window is active.
inline void waitForWindowManager()
{
    QWidget probe;
    probe.show();
    QTRY_VERIFY_WITH_TIMEOUT(
        !outputOf(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow")}).trimmed().isEmpty(), patience);
}

/// A plain window, as another program would show it.
inline int showOtherProgram(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setGeometry(otherPlace);
    window.show();
    return QApplication::exec();
}

/// The main function of such a test: on a real X server with a window manager.
template <typename Test>
int runBesideOtherProgram(int argc, char** argv)
{
    const QString otherProgram = QStringLiteral("other-program");
    if (argc > 1 && QString::fromLocal8Bit(argv[1]) == otherProgram) {
        return showOtherProgram(argc, argv);
    }
    const TemporaryHome home;
    const SessionBus bus;
    const VirtualDisplay display;
    const WindowManager windowManager;
    const HelperProcess other(QString::fromLocal8Bit(argv[0]), {otherProgram});
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace lapsa::test
