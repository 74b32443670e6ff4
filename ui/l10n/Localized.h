// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstdint>

namespace lapsa {

/// The two-language string table. Every function checks the language again, so that a changed locale needs no
/// notification. A text used by only one view is in that view, chosen by text().
class Localized final
{
public:
    /// Whether the language code of the current locale is exactly "it". Any other language, or none, means English.
    [[nodiscard]] static bool isItalian();

    /// The text in the current language.
    [[nodiscard]] static QString text(const QString& english, const QString& italian);

    /// A whole number with the separators of the current language: "5,000", Italian "5.000".
    [[nodiscard]] static QString number(std::int64_t number);

    /// "1 file", "3 files", Italian "3 file".
    [[nodiscard]] static QString fileCount(std::int64_t files);
    /// "1.2 GB", Italian "1,2 GB". A unit is 1024 times the one before.
    [[nodiscard]] static QString dataSize(std::int64_t bytes);

    [[nodiscard]] static QString openLapsa();
    [[nodiscard]] static QString preferences();
    [[nodiscard]] static QString addFinderSelection();
    [[nodiscard]] static QString openDataFolder();
    [[nodiscard]] static QString quit();
    [[nodiscard]] static QString notificationTitle();
    /// A format: "%@" stands for an item's display name, "%d" for a number of minutes.
    [[nodiscard]] static QString notificationBody();
    [[nodiscard]] static QString temporaryCountdowns();
    [[nodiscard]] static QString dropFiles();
    [[nodiscard]] static QString defaultExpiry();
    [[nodiscard]] static QString filesPresent();
    [[nodiscard]] static QString filePresent();
    [[nodiscard]] static QString nothingHere();
    [[nodiscard]] static QString pauseAll();
    [[nodiscard]] static QString recovery();
    [[nodiscard]] static QString useRecovery();
    [[nodiscard]] static QString retention();
    [[nodiscard]] static QString fileTypeRules();
    [[nodiscard]] static QString autoCleanFolders();
    [[nodiscard]] static QString waitingForDisk();
    [[nodiscard]] static QString daysShort();
    [[nodiscard]] static QString hoursShort();
    [[nodiscard]] static QString minutesShort();
    [[nodiscard]] static QString durationDays();
    [[nodiscard]] static QString durationHours();
    [[nodiscard]] static QString durationMinutes();
};

} // namespace lapsa
