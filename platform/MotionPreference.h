// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace lapsa {

/// Whether the user's desktop settings allow animations.
class MotionPreference : public QObject
{
    Q_OBJECT

public:
    /// True unless a setting says otherwise.
    [[nodiscard]] virtual bool animationsEnabled() const = 0;

signals:
    void animationsEnabledChanged(bool enabled);
};

} // namespace lapsa
