// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace lapsa {

/// A key that works wherever the focus is, when exactly its modifiers are held.
struct HotKey
{
    /// Identifies the key to the desktop; the same at every start.
    QString identifier;
    /// What the key does, for desktops that list such keys.
    QString description;
    /// A lower-case Latin letter; stands for the key that types it.
    char letter = '\0';
    bool super = false;
    bool shift = false;

    friend bool operator==(const HotKey&, const HotKey&) = default;
};

/// A registered hot key. Destroying it releases the key.
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

    /// Calls `pressed` on the main thread for every press of the key, once however long it is held. If another program
    /// owns the key, or the desktop has no global keys, `pressed` is never called and no error is reported.
    [[nodiscard]] virtual std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey& key,
                                                                             std::function<void()> pressed) = 0;
};

} // namespace lapsa
