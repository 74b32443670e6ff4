// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PanelController.h"
#include "PanelWorld.h"
#include "RecordingDesktop.h"
#include "StoreWorld.h"

#include <QTest>

namespace lapsa::test {

/// The controller over the real store. Nobody here acts upon what it announces.
class ControllerWorld final : public StoreWorld
{
public:
    explicit ControllerWorld(bool keepPanelOpen = true)
    {
        changeSettings([keepPanelOpen](LapsaSettings& settings) { settings.keepPanelOpen = keepPanelOpen; });
    }

    [[nodiscard]] bool open() const { return controller.popover() != nullptr && controller.popover()->isVisible(); }

    void show()
    {
        controller.show(&button);
        if (!QTest::qWaitForWindowActive(controller.popover())) {
            qFatal("the panel does not come up");
        }
    }

    /// A click on the button.
    void toggle() { controller.toggle(&button, button.frame()); }

    RecordingIcons icons;
    RecordingStatusButton button;
    RecordingFolderPicker folderPicker;
    PlainWindowSystem windowSystem;
    PlayedPointer pointer;
    PanelController controller{{{store(), time, time, icons, kinds, store()}, folderPicker, windowSystem, pointer}};
};

} // namespace lapsa::test
