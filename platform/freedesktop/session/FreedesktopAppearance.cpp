// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopAppearance.h"

#include "PortalSetting.h"

#include <QApplication>
#include <QPalette>
#include <QVariant>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString settingsGroup = u"org.freedesktop.appearance"_s;
const QString settingsKey = u"color-scheme"_s;

/// "1: Prefer dark appearance" of the portal's documentation; 0, 2 and unknown values are light here.
constexpr uint preferDark = 1;

ColorScheme schemeOf(const QVariant& value)
{
    return value.toUInt() == preferDark ? ColorScheme::Dark : ColorScheme::Light;
}

} // namespace

FreedesktopAppearance::FreedesktopAppearance(std::function<QPalette(ColorScheme)> paletteFor)
    : m_paletteFor(std::move(paletteFor))
{}

FreedesktopAppearance::~FreedesktopAppearance() = default;

void FreedesktopAppearance::setForcedScheme(std::optional<ColorScheme> scheme)
{
    m_forced = scheme;
    if (!m_forced && !m_setting) {
        m_setting = std::make_unique<PortalSetting>(settingsGroup, settingsKey);
        connect(m_setting.get(), &PortalSetting::valueChanged, this, &FreedesktopAppearance::follow);
    }
    apply(m_forced ? *m_forced : schemeOf(m_setting->value()));
}

void FreedesktopAppearance::follow()
{
    if (!m_forced) {
        apply(schemeOf(m_setting->value()));
    }
}

void FreedesktopAppearance::apply(ColorScheme scheme)
{
    if (m_applied == scheme) {
        return;
    }
    m_applied = scheme;
    QApplication::setPalette(m_paletteFor(scheme));
    if (m_scheme != scheme) {
        m_scheme = scheme;
        emit schemeChanged(scheme);
    }
}

} // namespace lapsa
