// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Language.h"

#include <QByteArray>

#include <algorithm>

namespace lapsa {

QString currentLanguageCode()
{
    QByteArray locale;
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = qgetenv(variable);
        if (!locale.isEmpty()) {
            break;
        }
    }
    // language[_TERRITORY][.codeset][@modifier], as in setlocale(3); some systems write a hyphen for the underscore.
    const auto end = std::ranges::find_if(locale, [](char c) { return QByteArrayView("_-.@").contains(c); });
    const QByteArray language = locale.first(end - locale.begin());
    // Language codes are lower case; anything else, such as "C" or "POSIX", names no language.
    if (!std::ranges::all_of(language, [](char c) { return c >= 'a' && c <= 'z'; })) {
        return {};
    }
    return QString::fromLatin1(language);
}

} // namespace lapsa
