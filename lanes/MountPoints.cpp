// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "MountPoints.h"

#include "MountTable.h"

#include <fcntl.h>
#include <poll.h>

#include <array>

namespace lapsa {

MountPoints::MountPoints()
    : m_table(retrying([] { return ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC); }))
{
    read();
}

const QString& MountPoints::holding(const QString& path)
{
    if (changed()) {
        read();
    }
    static const QString root = QStringLiteral("/");
    for (QString prefix = path; prefix.size() > 1; prefix.truncate(prefix.lastIndexOf(u'/'))) {
        if (const auto point = m_points.constFind(prefix); point != m_points.cend()) {
            return *point;
        }
    }
    return root;
}

bool MountPoints::changed() const
{
    pollfd table{.fd = m_table.get(), .events = POLLPRI, .revents = 0};
    return ::poll(&table, 1, 0) > 0 && (table.revents & (POLLPRI | POLLERR)) != 0;
}

void MountPoints::read()
{
    QByteArray table;
    std::array<char, 1 << 14> part{};
    if (::lseek(m_table.get(), 0, SEEK_SET) != 0) {
        return;
    }
    for (;;) {
        const ssize_t bytes = retrying([&] { return ::read(m_table.get(), part.data(), part.size()); });
        if (bytes <= 0) {
            break;
        }
        table.append(part.data(), bytes);
    }
    m_points.clear();
    for (const QByteArray& point : mountPointsOf(table)) {
        m_points.insert(QString::fromUtf8(point));
    }
}

} // namespace lapsa
