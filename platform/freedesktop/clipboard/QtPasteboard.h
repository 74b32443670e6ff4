// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Pasteboard.h"

namespace lapsa {

/// The desktop's clipboard.
class QtPasteboard final : public Pasteboard
{
public:
    void setText(const QString& text) override;
};

} // namespace lapsa
