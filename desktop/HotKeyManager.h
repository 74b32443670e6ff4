// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

namespace lapsa {

class HotKeyRegistration;
class HotKeys;

/// The one hot key, Super+Shift+Y. Where the Command key is on other systems, the Super key is here.
class HotKeyManager final
{
public:
    /// `handler` is what every press runs. Nothing is registered yet.
    HotKeyManager(HotKeys& hotKeys, std::function<void()> handler);
    HotKeyManager(const HotKeyManager&) = delete;
    HotKeyManager& operator=(const HotKeyManager&) = delete;
    ~HotKeyManager();

    /// Takes the key. Whether that succeeded is not known here: a key that belongs to another program does nothing.
    void registerHotKey();
    /// Gives the key back; the second time, and without one, nothing.
    void unregister();

private:
    HotKeys& m_hotKeys;
    std::function<void()> m_handler;
    std::unique_ptr<HotKeyRegistration> m_hotKeyRef;
};

} // namespace lapsa
