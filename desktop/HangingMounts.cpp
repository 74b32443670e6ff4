// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HangingMounts.h"

#include "MainQueue.h"
#include "SystemLog.h"

#include <chrono>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Ten seconds, less what the lanes have waited. A disk that only starts to spin answers sooner.
constexpr std::chrono::milliseconds patience{8000};

} // namespace

HangingMounts::HangingMounts(MainQueue& mainQueue)
    : m_mainQueue(mainQueue)
{}

HangingMounts::~HangingMounts() = default;

void HangingMounts::hangs(const QString& mountPoint)
{
    Mount& mount = m_mounts[mountPoint];
    if (++mount.hanging == 1) {
        mount.telling = m_mainQueue.asyncAfter(patience, [this, mountPoint] { tell(mountPoint); });
    }
}

void HangingMounts::isBack(const QString& mountPoint)
{
    const auto mount = m_mounts.find(mountPoint);
    if (mount == m_mounts.end() || --mount->second.hanging > 0) {
        return;
    }
    if (mount->second.told) {
        systemLog(u"Lapsa no longer waits for "_s + mountPoint);
    }
    m_mounts.erase(mount);
}

void HangingMounts::tell(const QString& mountPoint)
{
    m_mounts[mountPoint].told = true;
    systemLog(u"Lapsa waits for "_s + mountPoint);
}

} // namespace lapsa
