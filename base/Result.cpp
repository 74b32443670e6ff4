// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Result.h"

#include <system_error>

namespace lapsa {

FileError FileError::fromErrno(int code)
{
    return {.code = code, .description = QString::fromLocal8Bit(std::system_category().message(code).c_str())};
}

} // namespace lapsa
