// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoppedCall.h"

#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>

#include <algorithm>
#include <climits>

namespace lapsa::test {

namespace {

/// Where the arguments of a call stand (syscall(2)).
constexpr unsigned long long user_regs_struct::*arguments[] = {&user_regs_struct::rdi, &user_regs_struct::rsi,
                                                               &user_regs_struct::rdx, &user_regs_struct::r10,
                                                               &user_regs_struct::r8,  &user_regs_struct::r9};

} // namespace

StoppedCall::StoppedCall(pid_t process)
    : m_process(process)
{
    ::ptrace(PTRACE_GETREGS, m_process, nullptr, &m_registers);
    m_kind = tracedCall(number());
}

unsigned long long StoppedCall::argument(int number) const
{
    return m_registers.*arguments[number];
}

QByteArray StoppedCall::text() const
{
    if (m_kind == nullptr) {
        return "?";
    }
    return m_kind->path ? QByteArray(m_kind->name) + ' ' + textAt(argument(*m_kind->path)) : QByteArray(m_kind->name);
}

bool StoppedCall::writesIntoPipe() const
{
    if (number() != SYS_write) {
        return false;
    }
    const QByteArray link =
        "/proc/" + QByteArray::number(m_process) + "/fd/" + QByteArray::number(qulonglong(argument(0)));
    struct stat status = {};
    return ::stat(link.constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

void StoppedCall::refuse(int error)
{
    m_registers.orig_rax = ~0ULL; // no call at all
    report(error);
}

void StoppedCall::halve()
{
    if (m_kind != nullptr && m_kind->count) {
        m_registers.*arguments[*m_kind->count] /= 2;
        write();
    }
}

void StoppedCall::report(int error)
{
    m_registers.rax = static_cast<unsigned long long>(-error);
    write();
}

void StoppedCall::write() const
{
    ::ptrace(PTRACE_SETREGS, m_process, nullptr, &m_registers);
}

QByteArray StoppedCall::textAt(unsigned long long address) const
{
    QByteArray text(PATH_MAX, '\0');
    constexpr qsizetype page = 4096;
    // Up to the end of its memory page at first: what lies behind may not be there.
    qsizetype length = page - qsizetype(address % page);
    for (int reads = 0; reads < 2; ++reads) {
        const iovec local{.iov_base = text.data(), .iov_len = std::size_t(std::min(length, text.size()))};
        const iovec remote{.iov_base = reinterpret_cast<void*>(address), .iov_len = local.iov_len};
        if (::process_vm_readv(m_process, &local, 1, &remote, 1, 0) < 0 || text.first(length).contains('\0')) {
            break;
        }
        length = text.size();
    }
    return text.constData();
}

} // namespace lapsa::test
