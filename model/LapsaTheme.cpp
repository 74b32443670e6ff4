// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaTheme.h"

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

QString rawValue(LapsaTheme theme)
{
    switch (theme) {
    case LapsaTheme::System:
        return u"system"_s;
    case LapsaTheme::Dark:
        return u"dark"_s;
    case LapsaTheme::Light:
        return u"light"_s;
    }
    Q_UNREACHABLE();
}

std::optional<LapsaTheme> lapsaThemeFromRawValue(const QString& text)
{
    const auto* const found = std::ranges::find(allLapsaThemes, text, rawValue);
    return found == allLapsaThemes.end() ? std::nullopt : std::optional(*found);
}

} // namespace lapsa
