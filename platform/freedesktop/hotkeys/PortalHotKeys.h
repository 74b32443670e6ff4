// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotKeys.h"

namespace lapsa {

/// Global keys of the desktop portal (`org.freedesktop.portal.GlobalShortcuts`), used on Wayland instead of grabs. The
/// desktop may let the user choose another key. No call waits.
class PortalHotKeys final : public HotKeys
{
public:
    /// `fallback` provides the keys while the portal does not. Only one of them provides a key at a time.
    explicit PortalHotKeys(std::unique_ptr<HotKeys> fallback);

    [[nodiscard]] std::unique_ptr<HotKeyRegistration> registerHotKey(const HotKey& key,
                                                                     std::function<void()> pressed) override;

private:
    std::unique_ptr<HotKeys> m_fallback;
};

} // namespace lapsa
