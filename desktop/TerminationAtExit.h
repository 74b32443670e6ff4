// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AppDelegate.h"

#include <cstdlib>

namespace lapsa {

/// Terminates the delegate if the process exits while this lives. The toolkit calls exit() when the X server goes away,
/// and then main() never returns. The pointer is global because std::atexit() takes a function without a context.
class TerminationAtExit final
{
public:
    explicit TerminationAtExit(AppDelegate& delegate)
    {
        s_delegate = &delegate;
        std::atexit(terminate);
    }

    TerminationAtExit(const TerminationAtExit&) = delete;
    TerminationAtExit& operator=(const TerminationAtExit&) = delete;

    ~TerminationAtExit() { s_delegate = nullptr; }

private:
    static void terminate()
    {
        if (s_delegate != nullptr) {
            s_delegate->applicationWillTerminate();
        }
    }

    static inline AppDelegate* s_delegate = nullptr;
};

} // namespace lapsa
