// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace lapsa {

/// Whether the user of the desktop wants things to move.
class MotionPreference : public QObject
{
    Q_OBJECT

public:
    /// True while nobody has said otherwise.
    [[nodiscard]] virtual bool animationsEnabled() const = 0;

signals:
    void animationsEnabledChanged(bool enabled);
};

} // namespace lapsa
