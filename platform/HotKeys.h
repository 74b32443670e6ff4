// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace lapsa {

/// A key that works wherever the focus is, with its modifiers held and no others.
struct HotKey
{
    /// Names the key towards the desktop, the same at every start.
    QString identifier;
    /// What it does, for desktops that show such keys to the user.
    QString description;
    /// A Latin small letter: the key that types it.
    char letter = '\0';
    bool super = false;
    bool shift = false;

    friend bool operator==(const HotKey&, const HotKey&) = default;
};

/// A hot key that is registered. Destroying it gives the key back to the desktop.
class HotKeyRegistration
{
public:
    HotKeyRegistration() = default;
    HotKeyRegistration(const HotKeyRegistration&) = delete;
    HotKeyRegistration& operator=(const HotKeyRegistration&) = delete;
    virtual ~HotKeyRegistration() = default;
};

/// The desktop's global keys.
class HotKeys
{
public:
    HotKeys() = default;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;
    virtual ~HotKeys() = default;

    /// From now on every press of the key calls `pressed` on the main thread, once however long it is held. Where the
    /// key belongs to another program, or the desktop has no such keys, nothing ever happens and nobody is told.
    [[nodiscard]] virtual std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey& key,
                                                                             std::function<void()> pressed) = 0;
};

} // namespace lapsa
