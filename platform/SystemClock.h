// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Clock.h"

namespace lapsa {

/// The system's real-time clock.
class SystemClock final : public Clock
{
public:
    [[nodiscard]] TimePoint now() const override;
};

} // namespace lapsa
