// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

namespace lapsa::test {

/// A terminal without a screen: what a process writes to its device can be read here.
class PseudoTerminal final
{
public:
    PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal();

    /// The descriptor of the end that a process writes to.
    [[nodiscard]] int device() const { return m_device; }

    /// What was written since the last look. Lines end as on a terminal, with a carriage return and a line feed.
    [[nodiscard]] QByteArray written() const;

private:
    int m_screen = -1;
    int m_device = -1;
};

} // namespace lapsa::test
