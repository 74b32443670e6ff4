// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Motion.h"

#include "LapsaStyle.h"

#include <QApplication>
#include <QVariantAnimation>

namespace lapsa::motion {

using namespace Qt::StringLiterals;

bool allowed()
{
    const auto* const style = qobject_cast<const LapsaStyle*>(QApplication::style());
    return (style == nullptr || style->animationsEnabled()) && QGuiApplication::platformName() != "offscreen"_L1;
}

void setAllowedByDesktop(bool allowed)
{
    if (auto* const style = qobject_cast<LapsaStyle*>(QApplication::style())) {
        style->setAnimationsEnabled(allowed);
    }
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
