// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// The language code of the current locale, for example "it" of "it_CH.UTF-8"; empty when the locale has none ("C",
/// "POSIX"). Read from `LC_ALL`, `LC_MESSAGES` and `LANG`, the first that is set and not empty, anew at each call.
/// `LANGUAGE` is a list of preferences, not the locale, and is not read.
[[nodiscard]] QString currentLanguageCode();

} // namespace lapsa
