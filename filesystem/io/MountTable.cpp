// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "MountTable.h"

#include "FileSystem.h"

#include <QList>

#include <algorithm>
#include <array>
#include <optional>

namespace lapsa {

namespace {

/// Decodes space, tab, newline and backslash, which are written as a backslash and three octal digits: see
/// proc_pid_mountinfo(5).
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

struct Mount
{
    QByteArray point;
    QByteArray kind;
    QByteArray source;
};

QList<Mount> mountsIn(const QByteArray& table)
{
    QList<Mount> found;
    for (const QByteArray& line : table.split('\n')) {
        constexpr qsizetype point = 4;
        const QList<QByteArray> fields = line.split(' ');
        // It follows any number of optional fields.
        const qsizetype separator = fields.indexOf("-");
        if (separator > point && separator + 2 < fields.size()) {
            found.push_back({.point = withoutEscapes(fields[point]),
                             .kind = fields[separator + 1],
                             .source = withoutEscapes(fields[separator + 2])});
        }
    }
    return found;
}

Result<QList<Mount>> mounts()
{
    const Result<QByteArray> table = fileSystem::read(QStringLiteral("/proc/self/mountinfo"));
    return table ? Result(mountsIn(table.value())) : table.error();
}

bool isServed(const Mount& mount)
{
    constexpr std::array<QByteArrayView, 4> withoutDevice = {"tmpfs", "ramfs", "overlay", "zfs"};
    return mount.kind.startsWith("fuse") ||
           (!mount.source.startsWith("/dev/") && std::ranges::find(withoutDevice, mount.kind) == withoutDevice.end());
}

} // namespace

QList<QByteArray> mountPointsOf(const QByteArray& mountInfo)
{
    QList<QByteArray> points;
    for (const Mount& mount : mountsIn(mountInfo)) {
        points.push_back(mount.point);
    }
    return points;
}

Result<bool> hasMountBelow(const QByteArray& folder)
{
    const Result<QList<Mount>> found = mounts();
    if (!found) {
        return found.error();
    }
    const QByteArray prefix = folder.endsWith('/') ? folder : folder + '/';
    return std::ranges::any_of(found.value(), [&](const Mount& mount) { return mount.point.startsWith(prefix); });
}

Result<QList<QByteArray>> servedMounts()
{
    const Result<QList<Mount>> found = mounts();
    if (!found) {
        return found.error();
    }
    QList<QByteArray> served;
    for (const Mount& mount : found.value()) {
        // The root is available, whatever serves it.
        if (mount.point != "/" && isServed(mount)) {
            served.push_back(mount.point);
        }
    }
    return served;
}

} // namespace lapsa
