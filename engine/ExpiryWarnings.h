// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

#include <cstdint>

namespace lapsa {

struct LapsaItem;

/// Tells the user that items are about to expire. Failures are not reported to the caller.
class ExpiryWarnings
{
public:
    ExpiryWarnings() = default;
    ExpiryWarnings(const ExpiryWarnings&) = delete;
    ExpiryWarnings& operator=(const ExpiryWarnings&) = delete;
    virtual ~ExpiryWarnings() = default;

    /// `minutes` is the number to state, not the exact time left.
    virtual void sendWarning(const LapsaItem& item, std::int64_t minutes) = 0;
    /// One warning for all these items (at least one), in addition to those that were sent one by one.
    virtual void sendJointWarning(const QList<LapsaItem>& items, std::int64_t minutes) = 0;
};

} // namespace lapsa
