// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

#include <QList>
#include <QRect>
#include <QString>

namespace lapsa::test {

/// A window as the window manager knows it.
struct ManagedWindow
{
    QString id;
    QString title;
    /// Without and with what the window manager puts around it.
    QRect inner;
    QRect frame;
};

/// A real window manager (xfwm4) on the display and the session bus that the environment names; without a bus, where
/// its settings are, newer versions do not start. Once this is constructed, it manages windows and gives them the
/// focus: a window that is shown earlier may never get it.
class WindowManager final
{
public:
    enum class Compositing
    {
        Never,
        /// Off at first; setCompositing() turns it on and off.
        BySetting,
    };

    explicit WindowManager(Compositing compositing = Compositing::Never);

    static void setCompositing(bool on);

    /// All windows that it manages, the lowest first.
    [[nodiscard]] static QList<ManagedWindow> stacking();

private:
    HelperProcess m_process;
};

} // namespace lapsa::test
