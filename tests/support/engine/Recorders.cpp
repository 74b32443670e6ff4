// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Recorders.h"

namespace lapsa::test {

ColorScheme RecordingAppearance::scheme() const
{
    return forced.isEmpty() ? ColorScheme::Light : forced.last().value_or(ColorScheme::Light);
}

} // namespace lapsa::test
