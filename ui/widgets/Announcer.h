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

    /// Announces `text` at once, in addition to current speech. Does nothing without a screen reader or while the
    /// window is closed.
    void announce(const QString& text);
};

} // namespace lapsa
