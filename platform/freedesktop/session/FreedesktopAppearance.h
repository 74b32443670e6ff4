// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"

#include <functional>
#include <memory>

class QPalette;

namespace lapsa {

class PortalSetting;

/// Applies the palette of the current scheme to the whole application. Without a forced scheme, it follows the
/// desktop's settings portal live; light until the portal has answered, and without a portal.
class FreedesktopAppearance final : public Appearance
{
    Q_OBJECT

public:
    explicit FreedesktopAppearance(std::function<QPalette(ColorScheme)> paletteFor);
    ~FreedesktopAppearance() override;

    void setForcedScheme(std::optional<ColorScheme> scheme) override;

    [[nodiscard]] ColorScheme scheme() const override { return m_scheme; }

private:
    void follow();
    void apply(ColorScheme scheme);

    std::function<QPalette(ColorScheme)> m_paletteFor;
    std::optional<ColorScheme> m_forced;
    std::optional<ColorScheme> m_applied;
    ColorScheme m_scheme = ColorScheme::Light;
    /// Created when the desktop's setting is first needed.
    std::unique_ptr<PortalSetting> m_setting;
};

} // namespace lapsa
