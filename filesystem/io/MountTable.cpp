// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "MountTable.h"

#include "FileSystem.h"

#include <QList>

#include <algorithm>
#include <optional>

namespace lapsa {

namespace {

/// Blank, tab, newline and backslash stand as three octal digits behind a backslash, as in proc_pid_mountinfo(5).
QByteArray withoutEscapes(QByteArrayView escaped)
{
    const auto digit = [&](qsizetype place) -> std::optional<int> {
        const bool octal = place < escaped.size() && escaped[place] >= '0' && escaped[place] <= '7';
        return octal ? std::optional(escaped[place] - '0') : std::nullopt;
    };
    QByteArray plain;
    plain.reserve(escaped.size());
    for (qsizetype i = 0; i < escaped.size(); ++i) {
        const auto first = digit(i + 1);
        const auto second = digit(i + 2);
        const auto third = digit(i + 3);
        if (escaped[i] == '\\' && first && second && third) {
            plain += static_cast<char>(*first * 64 + *second * 8 + *third);
            i += 3;
        } else {
            plain += escaped[i];
        }
    }
    return plain;
}

} // namespace

Result<bool> hasMountBelow(const QByteArray& folder)
{
    const Result<QByteArray> table = fileSystem::read(QStringLiteral("/proc/self/mountinfo"));
    if (!table) {
        return table.error();
    }
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    const QList<QByteArray> lines = table.value().split('\n');
    return std::ranges::any_of(lines, [&](const QByteArray& line) {
        constexpr qsizetype mountPoint = 4;
        const QList<QByteArray> fields = line.split(' ');
        return fields.size() > mountPoint && withoutEscapes(fields[mountPoint]).startsWith(prefix);
    });
}

} // namespace lapsa
