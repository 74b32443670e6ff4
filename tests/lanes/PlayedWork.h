// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <QDir>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <semaphore>
#include <utility>

namespace lapsa::test {

/// Work that goes on until it is let go, as a call on a disk that does not answer.
class Gate
{
public:
    ~Gate() { open(); }

    void open() { m_opened->release(64); }

    [[nodiscard]] Lanes::Work work(std::function<void()> report)
    {
        return [opened = m_opened, entered = m_entered, report = std::move(report)](LaneJob&) {
            entered->release();
            opened->acquire();
            return report;
        };
    }

    /// Waits until the work has begun.
    void awaitEntry() { m_entered->acquire(); }

private:
    std::shared_ptr<std::counting_semaphore<>> m_opened = std::make_shared<std::counting_semaphore<>>(0);
    std::shared_ptr<std::counting_semaphore<>> m_entered = std::make_shared<std::counting_semaphore<>>(0);
};

/// Work whose report notes a text.
inline Lanes::Work noting(QStringList& notes, const QString& text)
{
    return [&notes, text](LaneJob&) -> Lanes::Report { return [&notes, text] { notes << text; }; };
}

/// Of this process.
inline qsizetype threads()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace lapsa::test
