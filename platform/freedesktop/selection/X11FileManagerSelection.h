// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ActiveWindow.h"
#include "ClipboardRestore.h"
#include "FileManagerSelection.h"

#include <chrono>
#include <memory>
#include <vector>

namespace lapsa {

class CopyWatch;
class LateCopy;
class UnfinishedTransfer;
class X11Connection;
class X11Selection;

/// No file manager tells what is selected in it, but all of them copy it: the one in front is made to copy, what it
/// puts on the clipboard is read, and what was there before is put back. That last step needs the event loop.
///
/// Nothing is pressed unless the clipboard is safe, and unless a file manager has the keyboard.
class X11FileManagerSelection final : public FileManagerSelection
{
public:
    /// Until when after the question each step may take, the earlier ones included.
    struct Limits
    {
        std::chrono::milliseconds focus{120};
        std::chrono::milliseconds keeping{200};
        std::chrono::milliseconds answer{290};
    };

    X11FileManagerSelection();
    explicit X11FileManagerSelection(const Limits& limits);
    ~X11FileManagerSelection() override;

    [[nodiscard]] Answer ask() override;

private:
    struct Question;

    [[nodiscard]] Answer askThere(Question& question);
    /// Puts the clipboard's content into the question; if that fails, why.
    [[nodiscard]] static std::optional<Answer> keepClipboard(Question& question);
    /// Asks the file manager; if that fails, why.
    [[nodiscard]] static std::optional<Answer> requestCopy(Question& question);
    [[nodiscard]] static std::optional<Answer> pressKeys(Question& question);
    /// Follows the file manager until it has copied, or will not any more.
    static void waitForCopy(Question& question);
    [[nodiscard]] static Answer readAnswer(Question& question);
    [[nodiscard]] Answer withoutCopy(Question& question);

    Limits m_limits;
    ClipboardRestore m_restore;
    std::unique_ptr<LateCopy> m_late;
    /// An owner that is still handing out for one question does not hear the next.
    std::vector<std::unique_ptr<UnfinishedTransfer>> m_unfinished;
};

} // namespace lapsa
