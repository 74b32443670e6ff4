// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrashName.h"

#include "Everlasting.h"

#include <QHash>

#include <algorithm>
#include <climits>
#include <mutex>

namespace lapsa {

namespace {

/// The number to try next for each name in each trash, for all threads. Only a hint: a name is used only if it is free.
class NextNumbers final
{
public:
    [[nodiscard]] std::uint64_t of(const QByteArray& key) const
    {
        const std::scoped_lock lock(m_mutex);
        return m_numbers.value(key, 0);
    }

    void remember(const QByteArray& key, std::uint64_t number)
    {
        const std::scoped_lock lock(m_mutex);
        if (m_numbers.size() >= mostRemembered) {
            m_numbers.clear();
        }
        m_numbers.insert(key, number);
    }

private:
    static constexpr qsizetype mostRemembered = 4096;

    mutable std::mutex m_mutex;
    QHash<QByteArray, std::uint64_t> m_numbers;
};

NextNumbers& nextNumbers()
{
    static auto& numbers = makeEverlasting<NextNumbers>();
    return numbers;
}

constexpr qsizetype longestStem = NAME_MAX - qsizetype(sizeof(".trashinfo") - 1);

/// Shortened to at most `length` bytes, without splitting a character.
QByteArray shortened(QByteArray text, qsizetype length)
{
    if (text.size() <= length) {
        return text;
    }
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    while (length > 0 && continues(text[length])) {
        --length;
    }
    text.truncate(length);
    return text;
}

} // namespace

TrashName::TrashName(const FileIdentity& trash, const QByteArray& wanted)
    : m_key(QByteArray::number(trash.device) + '/' + QByteArray::number(trash.inode) + '/' + wanted)
    , m_wanted(wanted)
    , m_current(numbered())
{}

void TrashName::advance()
{
    m_number = std::max(m_number + 1, nextNumbers().of(m_key));
    m_current = numbered();
}

void TrashName::remember() const
{
    if (m_number > 1) {
        nextNumbers().remember(m_key, m_number + 1);
    }
}

QByteArray TrashName::numbered() const
{
    if (m_number == 1) {
        return shortened(m_wanted, longestStem);
    }
    const qsizetype dot = m_wanted.lastIndexOf('.');
    constexpr qsizetype longestExtension = 32;
    const bool hasExtension = dot > 0 && m_wanted.size() - dot <= longestExtension;
    const QByteArray stem = hasExtension ? m_wanted.first(dot) : m_wanted;
    const QByteArray ending = '.' + QByteArray::number(qulonglong(m_number)) + m_wanted.sliced(stem.size());
    return shortened(stem, longestStem - ending.size()) + ending;
}

} // namespace lapsa
