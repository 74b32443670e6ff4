// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LateCopy.h"

#include "X11Connection.h"

#include <QClipboard>
#include <QGuiApplication>

#include <chrono>
#include <utility>
#include <variant>

namespace lapsa {

namespace {

using namespace std::chrono_literals;

/// For a file manager that hangs. A copy after this time is assumed to be the user's own.
constexpr std::chrono::milliseconds patience = 10s;
/// For one that has read its events, or cannot report it: less time than a user needs to copy something.
constexpr auto settledPatience = 200ms;
constexpr auto untoldPatience = 1s;

std::chrono::milliseconds patienceFor(const CopyWatch& watch)
{
    if (!watch.canSettle()) {
        return untoldPatience;
    }
    return watch.settled() ? settledPatience : patience;
}

} // namespace

LateCopy::LateCopy(Parts parts, std::function<void(const ClipboardContent&)> restore)
    : m_parts(std::move(parts))
    , m_restore(std::move(restore))
    , m_input(m_parts.connection->fileDescriptor(), QSocketNotifier::Read)
{
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &LateCopy::stop);
    connect(&m_input, &QSocketNotifier::activated, this, &LateCopy::readEvents);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &LateCopy::noteOwnContent);
    m_end.start(patienceFor(*m_parts.watch));
    // Events already read do not wake the notifier.
    QMetaObject::invokeMethod(this, &LateCopy::readEvents, Qt::QueuedConnection);
}

LateCopy::~LateCopy() = default;

bool LateCopy::unanswered() const
{
    return m_end.isActive() && m_parts.watch->canSettle() && !m_parts.watch->settled();
}

void LateCopy::readEvents()
{
    if (!m_parts.connection) {
        return;
    }
    CopyWatch& watch = *m_parts.watch;
    const bool settledBefore = watch.settled();
    while (const X11Event event = m_parts.connection->nextEvent(QDeadlineTimer(0))) {
        watch.handle(*event);
        if (watch.copied()) {
            m_restore(m_parts.content);
            stop();
            return;
        }
    }
    if (watch.takenByAnother() || !m_parts.connection->usable()) {
        stop();
        return;
    }
    const bool settledNow = watch.settled();
    if (settledNow && !settledBefore) {
        m_end.start(settledPatience);
    }
}

/// Restores what this program has put on the clipboard meanwhile, such as a copied path, instead of the older content.
void LateCopy::noteOwnContent()
{
    auto content = ownClipboardContent();
    if (auto* const own = std::get_if<ClipboardContent>(&content); own != nullptr && m_parts.connection) {
        m_parts.content = std::move(*own);
    }
}

void LateCopy::stop()
{
    m_end.stop();
    m_input.setEnabled(false);
    // The connection is no longer read, and the content may be large.
    m_parts.watch.reset();
    m_parts.connection.reset();
    m_parts.content = {};
}

} // namespace lapsa
