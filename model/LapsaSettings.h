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

/// The bounds of every lifespan: a minute and 365 days.
inline constexpr std::int64_t minLifespanMinutes = 1;
inline constexpr std::int64_t maxLifespanMinutes = 525600;
/// The longest lead time of a warning.
inline constexpr std::int64_t maxNotifyBeforeMinutes = 60;
/// Seven days: the longest retention of a recovery copy.
inline constexpr std::int64_t maxRecoveryRetentionHours = 168;

/// The three rules that a fresh installation starts with, each with a fresh id.
[[nodiscard]] QList<LapsaFileTypeRule> defaultFileTypeRules();

/// The user's preferences. The bounds are not kept here but by `sanitize`.
struct LapsaSettings
{
    /// The lifespan of an added item where no rule applies.
    std::int64_t defaultExpirationMinutes = 120;
    /// Where the recovery window is off: to the Trash, or away for good.
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

    /// The shared default value: made on first use, so that its rule ids stay the same while the process lives.
    [[nodiscard]] static const LapsaSettings& defaults();

    friend bool operator==(const LapsaSettings&, const LapsaSettings&) = default;
};

/// A copy in which each bounded field is clamped into its range. Everything else, odd rules too, is left as it was.
[[nodiscard]] LapsaSettings sanitize(LapsaSettings settings);

void write(JSONEncoder& encoder, const LapsaSettings& settings);
void read(const JSONObject& object, LapsaSettings& settings);

} // namespace lapsa
