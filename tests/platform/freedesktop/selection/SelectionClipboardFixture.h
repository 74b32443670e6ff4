// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PlayedProgram.h"
#include "SelectionQuestions.h"
#include "VirtualDisplay.h"
#include "X11FileManagerSelection.h"

#include <QGuiApplication>
#include <QObject>
#include <QTest>

#include <memory>

namespace lapsa::test {

/// What the tests of the clipboard share: for each test a question of its own, and a clipboard that is not ours.
class SelectionClipboardFixture : public QObject
{
    Q_OBJECT

protected:
    void begin()
    {
        noActiveWindow();
        // The toolkit notices that it has lost the clipboard only as long as another has it.
        PlayedProgram passing(ownerOf({}));
        passing.copy();
        QTRY_VERIFY_WITH_TIMEOUT(!ownedByUs(), patience);
        m_selection = std::make_unique<X11FileManagerSelection>();
    }

    void end() { m_selection.reset(); }

    std::unique_ptr<X11FileManagerSelection> m_selection;
};

/// The main function of such a test: on a display of its own.
template <typename Test>
int runOnVirtualDisplay(int argc, char** argv)
{
    // Before the application, which connects to it.
    const VirtualDisplay display;
    const QGuiApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace lapsa::test
