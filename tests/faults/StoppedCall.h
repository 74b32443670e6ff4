// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TracedCalls.h"

#include <QByteArray>

#include <sys/types.h>
#include <sys/user.h>

namespace lapsa::test {

/// The call that a traced process stands before, or has just made: its registers, and what can be done to them.
class StoppedCall final
{
public:
    /// Of the process as it stands now.
    explicit StoppedCall(pid_t process);

    /// nullptr for a call that has nothing to do with files.
    [[nodiscard]] const TracedCall* kind() const { return m_kind; }

    [[nodiscard]] long number() const { return static_cast<long>(m_registers.orig_rax); }

    /// Counted from 0.
    [[nodiscard]] unsigned long long argument(int number) const;
    /// Whether something is written into a pipe. The sanitizers do so to find out what can be read; they end the
    /// process when it fails.
    [[nodiscard]] bool writesIntoPipe() const;
    /// Its name, and its path where it has one.
    [[nodiscard]] QByteArray text() const;

    /// Before the call: it is not made, and fails.
    void refuse(int error);
    /// Before the call: half of the bytes are asked for.
    void halve();
    /// After the call: it is reported as failed.
    void report(int error);

private:
    void write() const;
    [[nodiscard]] QByteArray textAt(unsigned long long address) const;

    pid_t m_process;
    user_regs_struct m_registers{};
    const TracedCall* m_kind = nullptr;
};

} // namespace lapsa::test
