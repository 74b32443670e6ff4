// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <QByteArray>

namespace lapsa {

/// What the trash writes about one entry before the entry follows. Removed again with this object, unless it is kept.
class TrashRecord final
{
public:
    /// Makes the record of `name`, which must be free, in the open folder `info`. That one is borrowed and stays open
    /// for as long as the record lives.
    [[nodiscard]] static Result<TrashRecord> make(int info, QByteArray name, QByteArrayView text);

    TrashRecord(TrashRecord&& other) noexcept;
    TrashRecord& operator=(TrashRecord&& other) noexcept;
    ~TrashRecord();

    /// The name that the entry has to get.
    [[nodiscard]] const QByteArray& name() const { return m_name; }

    /// Has its bytes set out for the disk, without waiting for them.
    void startWriting();

    /// Waits until its bytes are on the disk, so that a power cut never leaves the entry in the trash with an empty
    /// record: what a journal commits is in order, and the bytes are then there first. Far cheaper than waiting for the
    /// journal too. Returns an `errno` value.
    [[nodiscard]] int finishWriting();

    /// The entry has followed.
    void keep() { m_kept = true; }

private:
    TrashRecord(int info, QByteArray name, FileDescriptor file);

    [[nodiscard]] static QByteArray fileName(const QByteArray& name);

    int m_info;
    QByteArray m_name;
    FileDescriptor m_file;
    /// What went wrong when the writing was started.
    int m_error = 0;
    bool m_kept = false;
};

} // namespace lapsa
