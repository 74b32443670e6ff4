// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopMotionPreference.h"

#include "PortalSetting.h"

#include <QString>
#include <QVariant>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

bool switchedOff(const QVariant& enabled)
{
    return enabled.isValid() && !enabled.toBool();
}

/// The factor for all durations, which the portal gives as text.
bool shortenedToNothing(const QVariant& factor)
{
    bool isNumber = false;
    const double value = factor.toDouble(&isNumber);
    return isNumber && value <= 0;
}

} // namespace

FreedesktopMotionPreference::FreedesktopMotionPreference()
    // The portals of most desktops have this one, not only GNOME's.
    : m_gnome(std::make_unique<PortalSetting>(u"org.gnome.desktop.interface"_s, u"enable-animations"_s))
    , m_plasma(std::make_unique<PortalSetting>(u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s))
{
    connect(m_gnome.get(), &PortalSetting::valueChanged, this, &FreedesktopMotionPreference::update);
    connect(m_plasma.get(), &PortalSetting::valueChanged, this, &FreedesktopMotionPreference::update);
}

FreedesktopMotionPreference::~FreedesktopMotionPreference() = default;

void FreedesktopMotionPreference::update()
{
    const bool enabled = !switchedOff(m_gnome->value()) && !shortenedToNothing(m_plasma->value());
    if (m_enabled != enabled) {
        m_enabled = enabled;
        emit animationsEnabledChanged(enabled);
    }
}

} // namespace lapsa
