// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace lapsa {

struct LapsaItem;

/// Tells the user that an item is about to expire. Never fails outwardly.
class ExpiryWarnings
{
public:
    ExpiryWarnings() = default;
    ExpiryWarnings(const ExpiryWarnings&) = delete;
    ExpiryWarnings& operator=(const ExpiryWarnings&) = delete;
    virtual ~ExpiryWarnings() = default;

    /// `minutes` is the number to state, not the exact time left.
    virtual void sendWarning(const LapsaItem& item, std::int64_t minutes) = 0;
};

} // namespace lapsa
