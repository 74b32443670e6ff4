// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "RecoveryListView.h"
#include "RecoveryRowLayout.h"
#include "RecoveryView.h"
#include "StoreWorld.h"

#include <QStringList>

class QLineEdit;

namespace lapsa {

class PushButton;

} // namespace lapsa

namespace lapsa::test {

/// The Recovery window over the real store, not shown yet.
class RecoveryWorld : public StoreWorld
{
public:
    RecoveryWorld();

    /// Parks files of these names, one minute after the other; the last is the newest.
    void parkFiles(const QStringList& names);
    void show();
    /// Lets the queued redraws pass.
    void settle();

    [[nodiscard]] RecoveryListView& list();
    [[nodiscard]] QLineEdit& field();
    [[nodiscard]] PushButton& button(const QString& text);
    /// The names of the rows, from top to bottom.
    [[nodiscard]] QStringList rows();
    /// Those of the selected ones.
    [[nodiscard]] QStringList selected();
    /// What the window says above the list; empty if nothing is shown.
    [[nodiscard]] QString message();
    /// The text at the foot.
    [[nodiscard]] QString count();
    /// A part of a row, in the coordinates of the list's viewport.
    [[nodiscard]] RecoveryRowLayout layoutOf(int row);
    /// A click of the left button on a row, beside its buttons.
    void click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// A click on one of its buttons.
    void click(int row, RecoveryRowLayout::Button button);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    RecoveryView view;
};

} // namespace lapsa::test
