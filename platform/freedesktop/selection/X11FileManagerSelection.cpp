// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11FileManagerSelection.h"

#include "CopyWatch.h"
#include "DolphinCopy.h"
#include "KeyStrokes.h"
#include "LateCopy.h"
#include "UnfinishedTransfer.h"
#include "UriList.h"
#include "X11Connection.h"
#include "X11Screen.h"
#include "X11Selection.h"

#include <array>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype answerLimit = 64LL * 1024 * 1024;
/// The time a program gets from reading its events to taking the clipboard.
constexpr std::chrono::milliseconds settleTime{50};
constexpr std::chrono::milliseconds focusStep{5};
constexpr std::chrono::milliseconds pingTime{10};
/// The targets under which file managers offer the list, the simplest first.
constexpr std::array<const char*, 2> listTargets{"text/uri-list", "x-special/gnome-copied-files"};

std::uint32_t toolkitClient()
{
    xcb_connection_t* const toolkit = x11Connection();
    return toolkit != nullptr ? xcb_get_setup(toolkit)->resource_id_base : 0;
}

QDeadlineTimer earlier(const QDeadlineTimer& one, const QDeadlineTimer& other)
{
    return one < other ? one : other;
}

} // namespace

/// One question and the objects it uses.
struct X11FileManagerSelection::Question
{
    std::unique_ptr<X11Connection> connection;
    FileManagerWindow fileManager;
    QDeadlineTimer focusEnd;
    QDeadlineTimer keepingEnd;
    QDeadlineTimer answerEnd;
    std::unique_ptr<CopyWatch> watch;
    ClipboardContent content;
    std::unique_ptr<X11Selection> selection;
    /// Whether our own content was taken off the clipboard meanwhile: some file managers read the clipboard before they
    /// copy, and we cannot answer while we wait.
    bool takenOff = false;
};

X11FileManagerSelection::X11FileManagerSelection()
    : X11FileManagerSelection(Limits())
{}

X11FileManagerSelection::X11FileManagerSelection(const Limits& limits)
    : m_limits(limits)
{}

X11FileManagerSelection::~X11FileManagerSelection() = default;

FileManagerSelection::Answer X11FileManagerSelection::ask()
{
    Question question{.connection = nullptr,
                      .fileManager = {},
                      .focusEnd = QDeadlineTimer(m_limits.focus, Qt::PreciseTimer),
                      .keepingEnd = QDeadlineTimer(m_limits.keeping, Qt::PreciseTimer),
                      .answerEnd = QDeadlineTimer(m_limits.answer, Qt::PreciseTimer),
                      .watch = nullptr,
                      .content = {},
                      .selection = nullptr,
                      .takenOff = false};
    if (m_late) {
        m_late->readEvents(); // otherwise a late copy would be kept as the user's content
    }
    if (m_restore.pending() || (m_late && m_late->unanswered())) {
        return Failure{u"the last question is not done with"_s};
    }
    question.connection = std::make_unique<X11Connection>();
    if (!question.connection->usable()) {
        return Failure{u"no connection to the X server"_s};
    }
    const auto window = activeFileManager(*question.connection, toolkitClient(), question.focusEnd);
    if (!window) {
        return Nothing();
    }
    question.fileManager = *window;
    Answer answer = askThere(question);
    if (question.selection && question.selection->unfinished()) {
        std::erase_if(m_unfinished, [](const auto& transfer) { return transfer->ended(); });
        m_unfinished.push_back(
            std::make_unique<UnfinishedTransfer>(std::move(question.connection), std::move(question.selection)));
    }
    return answer;
}

FileManagerSelection::Answer X11FileManagerSelection::askThere(Question& question)
{
    if (const std::optional<Answer> failure = keepClipboard(question)) {
        return *failure;
    }
    if (const std::optional<Answer> failure = requestCopy(question)) {
        if (question.takenOff) {
            m_restore.begin(question.content, question.fileManager.window);
        }
        return *failure;
    }
    // Not earlier: until now it watches for the late copy of an earlier question.
    m_late.reset();
    waitForCopy(question);
    if (!question.watch->copied()) {
        return withoutCopy(question);
    }
    Answer answer = readAnswer(question);
    m_restore.begin(question.content, question.fileManager.window);
    return answer;
}

std::optional<FileManagerSelection::Answer> X11FileManagerSelection::keepClipboard(Question& question)
{
    X11Connection& connection = *question.connection;
    const std::uint32_t ours = toolkitClient();
    question.watch = std::make_unique<CopyWatch>(connection, question.fileManager.window, ours, question.keepingEnd);
    question.selection = std::make_unique<X11Selection>(connection, question.keepingEnd);
    X11Selection& selection = *question.selection;
    auto content = clipboardContent(connection, selection, ours, question.keepingEnd);
    if (const auto* const reason = std::get_if<QString>(&content)) {
        return Failure{*reason};
    }
    question.content = std::get<ClipboardContent>(std::move(content));
    while (const X11Event event = connection.nextEvent(QDeadlineTimer(0))) {
        question.watch->handle(*event);
    }
    if (question.watch->copied() || question.watch->takenByAnother()) {
        return Failure{u"the clipboard changed while it was being kept"_s};
    }
    if (connection.sameClient(selection.owner(question.keepingEnd), ours)) {
        selection.clear();
        question.takenOff = true;
    }
    return std::nullopt;
}

FileManagerSelection::Answer X11FileManagerSelection::withoutCopy(Question& question)
{
    const CopyWatch& watch = *question.watch;
    const bool unanswered = watch.canSettle() && !watch.settled();
    if (!watch.takenByAnother()) {
        if (question.takenOff) {
            m_restore.begin(question.content, question.fileManager.window);
        }
        question.selection.reset();
        m_late = std::make_unique<LateCopy>(
            LateCopy::Parts{std::move(question.connection), std::move(question.watch), std::move(question.content)},
            [this, window = question.fileManager.window](const ClipboardContent& content) {
                m_restore.begin(content, window);
            });
    }
    return unanswered ? Answer(Failure{u"the file manager does not answer in time"_s}) : Answer(Nothing());
}

std::optional<FileManagerSelection::Answer> X11FileManagerSelection::requestCopy(Question& question)
{
    if (question.fileManager.way == FileManagerWindow::Way::Keys) {
        return pressKeys(question);
    }
    switch (copyInDolphin(question.fileManager.processId, question.fileManager.window, question.answerEnd)) {
    case DolphinOutcome::Copied:
        question.watch->done();
        break;
    case DolphinOutcome::Unanswered:
        // The time is up, but a ping is still needed to learn when Dolphin responds again.
        question.watch->asked(QDeadlineTimer(pingTime, Qt::PreciseTimer));
        break;
    case DolphinOutcome::NotAsked:
        return Failure{u"Dolphin does not answer on the session bus"_s};
    }
    return std::nullopt;
}

std::optional<FileManagerSelection::Answer> X11FileManagerSelection::pressKeys(Question& question)
{
    KeysOutcome outcome = KeysOutcome::FocusElsewhere;
    do {
        outcome = pressCopy(*question.connection, question.fileManager.window, question.keepingEnd);
        // The keyboard focus may follow the active window a moment later.
        std::ignore = question.connection->nextEvent([](const xcb_generic_event_t&) { return false; },
                                                     earlier(QDeadlineTimer(focusStep), question.keepingEnd));
    } while (outcome == KeysOutcome::FocusElsewhere && !question.keepingEnd.hasExpired());
    switch (outcome) {
    case KeysOutcome::Sent:
        question.watch->asked(question.answerEnd);
        return std::nullopt;
    case KeysOutcome::FocusElsewhere:
        return Nothing();
    case KeysOutcome::Impossible:
        break;
    }
    return Failure{u"the X server cannot press Control+C"_s};
}

void X11FileManagerSelection::waitForCopy(Question& question)
{
    std::optional<QDeadlineTimer> settled;
    while (!question.watch->copied()) {
        if (question.watch->settled() && !settled) {
            settled = earlier(QDeadlineTimer(settleTime, Qt::PreciseTimer), question.answerEnd);
        }
        const X11Event event = question.connection->nextEvent(settled.value_or(question.answerEnd));
        if (!event) {
            return;
        }
        question.watch->handle(*event);
    }
}

FileManagerSelection::Answer X11FileManagerSelection::readAnswer(Question& question)
{
    X11Connection& connection = *question.connection;
    const QDeadlineTimer& end = question.answerEnd;
    X11Selection& selection = *question.selection;
    // Some owners return plain text for every target, so only the targets they announce count.
    const QList<xcb_atom_t> announced = selection.targets(end);
    for (const char* const name : listTargets) {
        const xcb_atom_t target = connection.atom(name, end);
        if (!announced.contains(target)) {
            continue;
        }
        const SelectionAnswer answer = selection.read(target, end, answerLimit);
        if (answer.outcome == SelectionAnswer::Outcome::NoAnswer) {
            return Failure{u"the file manager does not hand out the list in time"_s};
        }
        if (Paths paths = pathsOfUriList(answer.bytes); !paths.isEmpty()) {
            return paths;
        }
    }
    if (end.hasExpired()) {
        return Failure{u"the file manager does not say in time what it has copied"_s};
    }
    return Nothing();
}

} // namespace lapsa
