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
        injection.kind = words[0] == "kill-before" ? Kind::KillBefore : Kind::KillAfter;
        return words[0].startsWith("kill-") ? std::optional(injection) : std::nullopt;
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
