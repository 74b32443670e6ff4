// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Motion.h"

#include <QGuiApplication>
#include <QVariantAnimation>

namespace lapsa::motion {

using namespace Qt::StringLiterals;

namespace {

bool& allowedByDesktop()
{
    static bool allowed = true;
    return allowed;
}

} // namespace

bool allowed()
{
    return allowedByDesktop() && QGuiApplication::platformName() != "offscreen"_L1;
}

void setAllowedByDesktop(bool allowed)
{
    allowedByDesktop() = allowed;
}

int milliseconds(std::chrono::milliseconds duration)
{
    return allowed() ? static_cast<int>(duration.count()) : 0;
}

void moveTo(QVariantAnimation& animation, double target, std::chrono::milliseconds duration)
{
    const double start = animation.currentValue().toDouble();
    animation.stop();
    animation.setEasingCurve(easing);
    animation.setStartValue(start);
    animation.setEndValue(target);
    animation.setDuration(milliseconds(duration));
    animation.start();
}

} // namespace lapsa::motion
