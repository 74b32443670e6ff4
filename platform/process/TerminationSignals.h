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
    /// Blocks these signals from now on. Also makes harmless those that would end the process in the middle of its
    /// work: a closed reader of standard error, the file size limit, a broken lease. The calls fail instead. Call it
    /// before starting a second thread, which would otherwise receive the signals.
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
