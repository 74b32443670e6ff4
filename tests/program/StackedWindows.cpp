// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StackedWindows.h"

#include <QList>
#include <QRect>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lapsa::test {

std::optional<ManagedWindow> windowTitled(const QString& title)
{
    const QList<ManagedWindow> windows = WindowManager::stacking();
    const auto found = std::ranges::find(windows, title, &ManagedWindow::title);
    return found != windows.end() ? std::optional(*found) : std::nullopt;
}

bool isAbove(const QString& upper, const QString& lower)
{
    const QList<ManagedWindow> windows = WindowManager::stacking();
    const auto higher = std::ranges::find(windows, upper, &ManagedWindow::title);
    return higher != windows.end() &&
           std::ranges::find(windows.begin(), higher, lower, &ManagedWindow::title) != higher;
}

QByteArray sight()
{
    QByteArray text = "from below:";
    for (const ManagedWindow& window : WindowManager::stacking()) {
        const QRect& frame = window.frame;
        text += u" “%1” %2,%3 %4x%5"_s.arg(window.title)
                    .arg(frame.x())
                    .arg(frame.y())
                    .arg(frame.width())
                    .arg(frame.height())
                    .toUtf8();
    }
    return text;
}

} // namespace lapsa::test
