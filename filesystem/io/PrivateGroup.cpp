// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PrivateGroup.h"

#include "Everlasting.h"
#include "SharedAnswer.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

namespace lapsa {

namespace {

struct User
{
    uid_t user = 0;
    gid_t group = 0;

    friend bool operator==(const User&, const User&) = default;
};

/// Calls a look-up of the user database with as large a buffer as it needs.
template <typename Entry, typename LookUp>
const Entry* lookedUp(Entry& entry, std::vector<char>& buffer, LookUp lookUp)
{
    Entry* found = nullptr;
    buffer.resize(1024);
    while (lookUp(entry, buffer, found) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    return found;
}

bool isOnlyOf(const User& user)
{
    std::vector<char> userBuffer;
    std::vector<char> groupBuffer;
    passwd userEntry{};
    group groupEntry{};
    const passwd* const self = lookedUp(userEntry, userBuffer, [&](auto& entry, auto& buffer, auto& found) {
        return ::getpwuid_r(user.user, &entry, buffer.data(), buffer.size(), &found);
    });
    const group* const own = lookedUp(groupEntry, groupBuffer, [&](auto& entry, auto& buffer, auto& found) {
        return ::getgrgid_r(user.group, &entry, buffer.data(), buffer.size(), &found);
    });
    if (self == nullptr || own == nullptr || self->pw_gid != user.group ||
        std::strcmp(self->pw_name, own->gr_name) != 0) {
        return false;
    }
    for (char** member = own->gr_mem; *member != nullptr; ++member) {
        if (std::strcmp(*member, self->pw_name) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

bool isPrivateGroup(gid_t group)
{
    if (group != ::getegid()) {
        return false;
    }
    // The user database may be remote (a directory service): it is asked only once for each user and group.
    static auto& known = makeEverlasting<SharedAnswer<User, bool>>();
    return known.to(User{.user = ::geteuid(), .group = group}, isOnlyOf);
}

} // namespace lapsa
