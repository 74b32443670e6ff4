// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace lapsa {

/// SIGTERM, SIGINT and SIGHUP as events of the main thread.
class TerminationSignals final : public QObject
{
    Q_OBJECT

public:
    /// Keeps the signals waiting from now on. Has those come to nothing that would end the process in the middle of its
    /// work: a reader of standard error that is gone, a file that may not get larger, a lease that somebody breaks. The
    /// calls fail instead. To be called before there is a second thread, which would take them.
    static void hold();

    TerminationSignals();
    ~TerminationSignals() override;

signals:
    void received();

private:
    void read();

    FileDescriptor m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace lapsa
