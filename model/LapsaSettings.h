// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaAutoCleanFolderRule.h"
#include "LapsaFileTypeRule.h"
#include "LapsaTheme.h"

#include <QList>

#include <cstdint>

namespace lapsa {

class JSONEncoder;
class JSONObject;

/// The bounds of every lifespan: one minute and 365 days.
inline constexpr std::int64_t minLifespanMinutes = 1;
inline constexpr std::int64_t maxLifespanMinutes = 525600;
/// The maximum lead time of a warning.
inline constexpr std::int64_t maxNotifyBeforeMinutes = 60;
/// The maximum retention of a recovery copy: seven days.
inline constexpr std::int64_t maxRecoveryRetentionHours = 168;

/// The three rules of a fresh installation, each with a new id.
[[nodiscard]] QList<LapsaFileTypeRule> defaultFileTypeRules();

/// The user's preferences. `sanitize` enforces the bounds, not this type.
struct LapsaSettings
{
    /// The lifespan of an added item if no rule applies.
    std::int64_t defaultExpirationMinutes = 120;
    /// If the recovery window is off: whether expired files go to the Trash or are deleted permanently.
    bool useTrash = true;
    /// Whether the panel stays open until its icon is clicked again.
    bool keepPanelOpen = true;
    /// Suspends expiry and the scan of watched folders.
    bool pauseAllCountdowns = false;
    bool enableExpiryNotifications = true;
    /// The lead time of the warning.
    std::int64_t notifyBeforeMinutes = 5;
    /// Expired files go to the recovery folder first, whatever `useTrash` says.
    bool useRecoveryWindow = true;
    std::int64_t recoveryRetentionHours = 24;
    LapsaTheme theme = LapsaTheme::System;
    QList<LapsaFileTypeRule> fileTypeRules = defaultFileTypeRules();
    QList<LapsaAutoCleanFolderRule> autoCleanFolders;

    /// The shared default value, created on first use, so that its rule ids stay the same for the life of the process.
    [[nodiscard]] static const LapsaSettings& defaults();

    friend bool operator==(const LapsaSettings&, const LapsaSettings&) = default;
};

/// A copy with each bounded field clamped to its range. Everything else, even odd rules, stays as it was.
[[nodiscard]] LapsaSettings sanitize(LapsaSettings settings);

void write(JSONEncoder& encoder, const LapsaSettings& settings);
void read(const JSONObject& object, LapsaSettings& settings);

} // namespace lapsa
