// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// The language code of the current locale, for example "it" of "it_CH.UTF-8"; empty when the locale has none ("C",
/// "POSIX"). Taken from the first of `LC_ALL`, `LC_MESSAGES` and `LANG` that is set and not empty, and read again on
/// each call. `LANGUAGE` is ignored: it lists preferences and is not the locale.
[[nodiscard]] QString currentLanguageCode();

} // namespace lapsa
