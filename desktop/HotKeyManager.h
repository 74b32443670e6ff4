// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>

namespace lapsa {

class HotKeyRegistration;
class HotKeys;

/// The only hot key, Super+Shift+Y. The Super key stands for the Command key of other systems.
class HotKeyManager final
{
public:
    /// `handler` runs at every press. Registers nothing yet.
    HotKeyManager(HotKeys& hotKeys, std::function<void()> handler);
    HotKeyManager(const HotKeyManager&) = delete;
    HotKeyManager& operator=(const HotKeyManager&) = delete;
    ~HotKeyManager();

    /// Registers the key. Does not report whether that succeeded: a key that belongs to another program does nothing.
    void registerHotKey();
    /// Releases the key. Does nothing the second time, or if none was registered.
    void unregister();

private:
    HotKeys& m_hotKeys;
    std::function<void()> m_handler;
    std::unique_ptr<HotKeyRegistration> m_hotKeyRef;
};

} // namespace lapsa
