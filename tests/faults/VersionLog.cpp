// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "VersionLog.h"

#include <QCryptographicHash>

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace lapsa::test {

VersionLog& VersionLog::shared()
{
    static VersionLog* const log = [] {
        void* const memory =
            ::mmap(nullptr, sizeof(VersionLog), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            qFatal("no shared memory");
        }
        return new (memory) VersionLog;
    }();
    return *log;
}

void VersionLog::clear()
{
    m_versions = {};
    m_starting = false;
    m_recordsWereLost = false;
}

void VersionLog::note(File file, QByteArrayView bytes)
{
    Versions& versions = m_versions.at(file);
    const Digest digest = digestOf(bytes);
    if (versions.count > 0 && versions.digests.at(versions.count - 1) == digest) {
        return;
    }
    versions.digests.at(versions.count) = digest;
    ++versions.count;
}

void VersionLog::promise()
{
    for (Versions& versions : m_versions) {
        versions.promised = versions.count == 0 ? 0 : versions.count - 1;
    }
}

bool VersionLog::isNewest(File file, QByteArrayView bytes) const
{
    const Versions& versions = m_versions.at(file);
    return versions.count > 0 && versions.digests.at(versions.count - 1) == digestOf(bytes);
}

bool VersionLog::knows(File file, QByteArrayView bytes) const
{
    return holds(file, bytes, 0);
}

bool VersionLog::keepsPromise(File file, QByteArrayView bytes) const
{
    return holds(file, bytes, m_versions.at(file).promised);
}

VersionLog::Digest VersionLog::digestOf(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(bytes);
    Digest digest{};
    std::ranges::copy(hash.result(), digest.begin());
    return digest;
}

bool VersionLog::holds(File file, QByteArrayView bytes, std::size_t from) const
{
    const Versions& versions = m_versions.at(file);
    const auto* const begin = versions.digests.cbegin();
    return std::find(begin + from, begin + versions.count, digestOf(bytes)) != begin + versions.count;
}

} // namespace lapsa::test
