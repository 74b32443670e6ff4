// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "MotionPreference.h"

#include <memory>

namespace lapsa {

class PortalSetting;

/// The desktop's settings for animations, live.
class FreedesktopMotionPreference final : public MotionPreference
{
    Q_OBJECT

public:
    FreedesktopMotionPreference();
    ~FreedesktopMotionPreference() override;

    [[nodiscard]] bool animationsEnabled() const override { return m_enabled; }

private:
    void update();

    std::unique_ptr<PortalSetting> m_gnome;
    std::unique_ptr<PortalSetting> m_plasma;
    bool m_enabled = true;
};

} // namespace lapsa
