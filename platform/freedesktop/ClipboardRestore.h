// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ClipboardContent.h"

#include <QObject>

namespace lapsa {

/// Puts back what was on the clipboard, in the name of this program.
class ClipboardRestore final : public QObject
{
public:
    using QObject::QObject;

    /// Takes the clipboard from whoever has it now, as soon as the event loop runs.
    void begin(const ClipboardContent& content);

    /// Whether it has begun and is not done: what is on the clipboard now is not the user's.
    [[nodiscard]] bool pending() const { return m_pending; }

private:
    bool m_pending = false;
};

} // namespace lapsa
