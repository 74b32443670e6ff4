// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PseudoTerminal.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace lapsa::test {

PseudoTerminal::PseudoTerminal()
    : m_screen(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK))
{
    std::array<char, 64> name{};
    if (m_screen < 0 || ::grantpt(m_screen) != 0 || ::unlockpt(m_screen) != 0 ||
        ::ptsname_r(m_screen, name.data(), name.size()) != 0) {
        qFatal("no pseudo terminal");
    }
    m_device = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_device < 0) {
        qFatal("the pseudo terminal cannot be opened");
    }
}

PseudoTerminal::~PseudoTerminal()
{
    ::close(m_device);
    ::close(m_screen);
}

QByteArray PseudoTerminal::written() const
{
    QByteArray all;
    std::array<char, 4096> piece{};
    for (ssize_t got = ::read(m_screen, piece.data(), piece.size()); got > 0;
         got = ::read(m_screen, piece.data(), piece.size())) {
        all.append(piece.data(), got);
    }
    return all;
}

} // namespace lapsa::test
