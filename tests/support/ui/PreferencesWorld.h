// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "StoreWorld.h"

#include <functional>

namespace lapsa::test {

/// The shown preferences over the real store.
class PreferencesWorld : public StoreWorld
{
public:
    PreferencesWorld();

    /// Changes the settings elsewhere, as another part of the program would, and lets the view see it.
    void changeElsewhere(const std::function<void(LapsaSettings&)>& change);
    /// Lets the queued redraws pass.
    void settle();

    [[nodiscard]] const LapsaSettings& settings() { return store().settings(); }

    /// The desktop has no dialog for folders until a test says so.
    RecordingFolderPicker folderPicker;
    PreferencesView view;
};

/// A key, to whatever has the focus in the window.
void pressKey(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

} // namespace lapsa::test
