// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"

#include <functional>
#include <memory>

class QPalette;

namespace lapsa {

class PortalSetting;
class XSettings;

/// Applies the palette of the current scheme to the whole application. Without a forced scheme, it follows the
/// desktop live: its settings portal; if that has no preference or there is none, the name of the theme that its
/// settings daemon shares on X11.
class FreedesktopAppearance final : public Appearance
{
    Q_OBJECT

public:
    /// `toolkitScheme` is the scheme of the desktop's own palette. It holds where the desktop tells nothing else.
    explicit FreedesktopAppearance(std::function<QPalette(ColorScheme)> paletteFor,
                                   ColorScheme toolkitScheme = ColorScheme::Light);
    ~FreedesktopAppearance() override;

    void setForcedScheme(std::optional<ColorScheme> scheme) override;

    [[nodiscard]] ColorScheme scheme() const override { return m_scheme; }

private:
    void follow();
    [[nodiscard]] ColorScheme desktopScheme() const;
    void apply(ColorScheme scheme);

    std::function<QPalette(ColorScheme)> m_paletteFor;
    ColorScheme m_toolkitScheme;
    std::optional<ColorScheme> m_forced;
    std::optional<ColorScheme> m_applied;
    ColorScheme m_scheme = ColorScheme::Light;
    /// Created when the desktop's settings are first needed.
    std::unique_ptr<PortalSetting> m_setting;
    std::unique_ptr<XSettings> m_xSettings;
};

} // namespace lapsa
