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

/// File managers do not report their selection, but all of them can copy it: this makes the active one copy, reads the
/// clipboard, and restores the previous content. The last step needs the event loop.
///
/// No key is pressed unless the clipboard's content is saved and a file manager has the focus.
class X11FileManagerSelection final : public FileManagerSelection
{
public:
    /// When each step must end, counted from the start of the question.
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
    /// Saves the clipboard's content in the question; returns the reason if that fails.
    [[nodiscard]] static std::optional<Answer> keepClipboard(Question& question);
    /// Asks the file manager to copy; returns the reason if that fails.
    [[nodiscard]] static std::optional<Answer> requestCopy(Question& question);
    [[nodiscard]] static std::optional<Answer> pressKeys(Question& question);
    /// Waits until the file manager has copied, or will not copy any more.
    static void waitForCopy(Question& question);
    [[nodiscard]] static Answer readAnswer(Question& question);
    [[nodiscard]] Answer withoutCopy(Question& question);

    Limits m_limits;
    ClipboardRestore m_restore;
    std::unique_ptr<LateCopy> m_late;
    /// Kept, because an owner that is still sending for one question does not notice the next.
    std::vector<std::unique_ptr<UnfinishedTransfer>> m_unfinished;
};

} // namespace lapsa
