// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

namespace lapsa {

/// Has a screen reader say what has happened by itself. It is there for nobody else: it shows and takes nothing.
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
