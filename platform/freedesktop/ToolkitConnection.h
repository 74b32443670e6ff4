// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

struct xcb_connection_t;

namespace lapsa {

/// The toolkit's own connection to the X server; null when it shows itself elsewhere.
[[nodiscard]] xcb_connection_t* toolkitConnection();

} // namespace lapsa
