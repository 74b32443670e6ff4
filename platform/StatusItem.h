// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace lapsa {

class StatusButton;

/// One entry of a status item's menu.
struct StatusMenuEntry
{
    /// Empty for a separator.
    QString title;
    /// Works while the menu is open: the portable text of a key sequence such as "Ctrl+Q", or nothing.
    QString shortcut;
    std::function<void()> action;
};

/// The program's place in the desktop's tray. It appears in whatever tray is there or starts later, until this object
/// is destroyed.
class StatusItem
{
public:
    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    /// Null if the desktop has no place for one.
    [[nodiscard]] virtual StatusButton* button() = 0;

    /// Sets the menu that a right click opens.
    virtual void setMenu(QList<StatusMenuEntry> entries) = 0;
};

/// The desktop's tray.
class StatusBar
{
public:
    StatusBar() = default;
    StatusBar(const StatusBar&) = delete;
    StatusBar& operator=(const StatusBar&) = delete;
    virtual ~StatusBar() = default;

    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
};

} // namespace lapsa
