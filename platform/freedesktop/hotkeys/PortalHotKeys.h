// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotKeys.h"

namespace lapsa {

/// Global keys of the desktop portal (`org.freedesktop.portal.GlobalShortcuts`), which Wayland has instead of grabs.
/// The desktop may let the user choose another key. Everything is asked for without waiting.
class PortalHotKeys final : public HotKeys
{
public:
    /// `fallback` gives the keys while the portal does not. A key comes from one of them at a time.
    explicit PortalHotKeys(std::unique_ptr<HotKeys> fallback);

    [[nodiscard]] std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey& key,
                                                                     std::function<void()> pressed) override;

private:
    std::unique_ptr<HotKeys> m_fallback;
};

} // namespace lapsa
