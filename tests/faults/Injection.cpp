// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Injection.h"

#include <QList>

#include <algorithm>
#include <array>
#include <cstring>

namespace lapsa::test {

namespace {

constexpr std::array reachNames = {"once", "later", "same"};
constexpr const char* latePrefix = "late-";

int errorOfName(const QByteArray& name)
{
    constexpr int last = 133; // EHWPOISON
    for (int error = 1; error <= last; ++error) {
        if (const char* const known = ::strerrorname_np(error); known != nullptr && name == known) {
            return error;
        }
    }
    return 0;
}

} // namespace

QByteArray Injection::text() const
{
    const QByteArray number = QByteArray::number(call);
    const QByteArray rest = QByteArray(" ") + reachNames.at(static_cast<std::size_t>(reach)) + ' ' + number;
    switch (kind) {
    case Kind::Nothing:
        return "nothing";
    case Kind::KillBefore:
        return "kill-before " + number;
    case Kind::KillAfter:
        return "kill-after " + number;
    case Kind::End:
        return "end " + number;
    case Kind::Fail:
        return ::strerrorname_np(error) + rest;
    case Kind::FailAfter:
        return QByteArray(latePrefix) + ::strerrorname_np(error) + rest;
    case Kind::Short:
        return "short" + rest;
    }
    return {};
}

std::optional<Injection> Injection::ofText(const QByteArray& text)
{
    const QList<QByteArray> words = text.split(' ');
    Injection injection;
    injection.call = words.back().toInt();
    if (words.size() == 2 && injection.call > 0) {
        constexpr std::array kinds = {Kind::KillBefore, Kind::KillAfter, Kind::End};
        constexpr std::array names = {"kill-before", "kill-after", "end"};
        const auto* const name = std::ranges::find_if(names, [&](const char* known) { return words[0] == known; });
        if (name == names.end()) {
            return std::nullopt;
        }
        injection.kind = kinds.at(static_cast<std::size_t>(name - names.begin()));
        return injection;
    }
    constexpr int wordsOfFault = 3;
    if (words.size() != wordsOfFault || injection.call <= 0) {
        return std::nullopt;
    }
    const auto* const reach = std::ranges::find_if(reachNames, [&](const char* name) { return words[1] == name; });
    if (reach == reachNames.end()) {
        return std::nullopt;
    }
    injection.reach = static_cast<Reach>(reach - reachNames.begin());
    if (words[0] == "short") {
        injection.kind = Kind::Short;
        return injection;
    }
    const bool late = words[0].startsWith(latePrefix);
    injection.kind = late ? Kind::FailAfter : Kind::Fail;
    injection.error = errorOfName(late ? words[0].sliced(qsizetype(qstrlen(latePrefix))) : words[0]);
    return injection.error == 0 ? std::nullopt : std::optional(injection);
}

} // namespace lapsa::test
