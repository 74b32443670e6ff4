// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace lapsa {

/// Lets a screen reader announce what happened by itself. It shows nothing and never takes the focus.
class Announcer final : public QWidget
{
    Q_OBJECT

public:
    explicit Announcer(QWidget* parent);

    /// Says it at once, in addition to what is being said. Without a screen reader, or while the window is closed,
    /// nothing happens.
    void announce(const QString& text);
};

} // namespace lapsa
