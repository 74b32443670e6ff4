// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Spotlight.h"

#include "Motion.h"

namespace lapsa {

namespace {

/// The fraction of the time before the fading starts: long enough for the eye to find the item.
constexpr double heldPart = 0.4;

} // namespace

Spotlight::Spotlight(QObject* parent)
    : QObject(parent)
{
    connect(&m_animation, &QVariantAnimation::valueChanged, this, &Spotlight::changed);
    connect(&m_animation, &QVariantAnimation::finished, this, &Spotlight::changed);
}

void Spotlight::light(const QSet<QString>& ids)
{
    m_ids = ids;
    m_animation.stop();
    m_animation.setKeyValues({{0, 1.0}, {heldPart, 1.0}, {1, motion::allowed() ? 0.0 : 1.0}});
    m_animation.setDuration(static_cast<int>(motion::highlightDuration.count()));
    m_animation.start();
    emit changed();
}

double Spotlight::strengthOf(const QString& id) const
{
    const bool lit = m_animation.state() == QAbstractAnimation::Running && m_ids.contains(id);
    return lit ? m_animation.currentValue().toDouble() : 0;
}

} // namespace lapsa
