// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CachedParts.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>

namespace lapsa {

CachedParts::CachedParts(int file, off_t start, off_t end)
    : m_file(file)
    , m_start(start)
    , m_dropped(start)
    , m_first(start / partLength)
    , m_cached(std::size_t((end + partLength - 1) / partLength - m_first))
{
    constexpr off_t window = partLength * 256;
    for (off_t place = m_first * partLength; place < end; place += window) {
        look(place, std::min(end, place + window));
    }
}

void CachedParts::look(off_t start, off_t end)
{
    const auto length = std::size_t(end - start);
    void* const mapped = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, m_file, start);
    if (mapped == MAP_FAILED) {
        return; // unknown: taken for not cached
    }
    const auto page = std::size_t(::sysconf(_SC_PAGESIZE));
    std::vector<unsigned char> resident((length + page - 1) / page);
    if (::mincore(mapped, length, resident.data()) == 0) {
        for (std::size_t i = 0; i < resident.size(); ++i) {
            if ((resident[i] & 1U) != 0) {
                m_cached[std::size_t((start + off_t(i * page)) / partLength - m_first)] = true;
            }
        }
    }
    ::munmap(mapped, length);
}

void CachedParts::dropUpTo(off_t place)
{
    // From further back again: the cache lets go only of whole units, which may have reached beyond the last place.
    constexpr off_t largestUnit = off_t{32} << 20;
    off_t start = std::max(m_start, m_dropped - largestUnit);
    off_t end = start;
    while (end < place) {
        const bool cached = m_cached[std::size_t(end / partLength - m_first)];
        end = std::min(place, (end / partLength + 1) * partLength);
        if (cached) {
            start = end;
        } else if (end == place || m_cached[std::size_t(end / partLength - m_first)]) {
            ::posix_fadvise(m_file, start, end - start, POSIX_FADV_DONTNEED);
            start = end;
        }
    }
    m_dropped = place;
}

} // namespace lapsa
