// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>
#include <QTemporaryFile>

namespace lapsa::test {

/// Collects what the process writes to standard error while this object lives.
class LogCapture final
{
public:
    LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    /// The lines written so far.
    [[nodiscard]] QStringList lines() const;

private:
    QTemporaryFile m_file;
    int m_standardError = -1;
};

} // namespace lapsa::test
