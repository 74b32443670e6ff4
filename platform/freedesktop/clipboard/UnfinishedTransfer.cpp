// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UnfinishedTransfer.h"

#include "X11Connection.h"
#include "X11Selection.h"

#include <chrono>
#include <utility>

namespace lapsa {

namespace {

constexpr std::chrono::seconds patience{10};

} // namespace

UnfinishedTransfer::UnfinishedTransfer(std::unique_ptr<X11Connection> connection,
                                       std::unique_ptr<X11Selection> selection)
    : m_connection(std::move(connection))
    , m_selection(std::move(selection))
    , m_input(m_connection->fileDescriptor(), QSocketNotifier::Read)
{
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, &UnfinishedTransfer::stop);
    connect(&m_input, &QSocketNotifier::activated, this, &UnfinishedTransfer::takeRest);
    // Events already read do not wake the notifier.
    QMetaObject::invokeMethod(this, &UnfinishedTransfer::takeRest, Qt::QueuedConnection);
    m_end.start(patience);
}

UnfinishedTransfer::~UnfinishedTransfer() = default;

void UnfinishedTransfer::takeRest()
{
    if (!m_selection) {
        return;
    }
    m_selection->takeRest();
    if (m_connection->usable()) {
        m_end.start(patience);
    } else {
        stop();
    }
}

void UnfinishedTransfer::stop()
{
    m_end.stop();
    m_input.setEnabled(false);
    m_selection.reset();
    m_connection.reset();
}

} // namespace lapsa
