// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PreferencesWorld.h"

#include <QApplication>
#include <QTest>

namespace lapsa::test {

PreferencesWorld::PreferencesWorld()
    : view(store(), folderPicker, time)
{
    view.show();
    view.activateWindow();
    if (!QTest::qWaitForWindowActive(&view)) {
        qFatal("the preferences do not come up");
    }
    settle();
}

void PreferencesWorld::changeElsewhere(const std::function<void(LapsaSettings&)>& change)
{
    changeSettings(change);
    settle();
}

void PreferencesWorld::settle()
{
    time.settle();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    // By way of the window, so that shortcuts are asked first.
    QTest::keyClick(window.windowHandle(), key, modifiers);
}

} // namespace lapsa::test
