// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "WorkObserver.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace lapsa::test {

/// Does something at each step of a copy, and may end it.
class StepWatcher final : public fileSystem::WorkObserver
{
public:
    explicit StepWatcher(std::function<bool(std::int64_t bytes)> wantsStop)
        : m_wantsStop(std::move(wantsStop))
    {}

    void copied(std::int64_t bytes, std::int64_t /*total*/) override { m_stopped = m_stopped || m_wantsStop(bytes); }

    void removed(std::int64_t /*entries*/) override {}

    [[nodiscard]] bool stopRequested() const override { return m_stopped; }

private:
    std::function<bool(std::int64_t)> m_wantsStop;
    bool m_stopped = false;
};

} // namespace lapsa::test
