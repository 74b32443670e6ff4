// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <QByteArray>

namespace lapsa {

/// The record of one entry, written before the entry moves to the trash. Removed with this object unless it is kept.
class TrashRecord final
{
public:
    /// Creates the record of `name`, which must be free, in the open folder `info`, which is borrowed and must stay
    /// open while the record exists.
    [[nodiscard]] static Result<TrashRecord> make(int info, QByteArray name, QByteArrayView text);

    /// The beginning of the record of `name`, with every path that the kernel knows.
    [[nodiscard]] static Result<QByteArray> read(int info, const QByteArray& name);

    TrashRecord(TrashRecord&& other) noexcept;
    TrashRecord& operator=(TrashRecord&& other) noexcept;
    ~TrashRecord();

    /// The name that the entry must get.
    [[nodiscard]] const QByteArray& name() const { return m_name; }

    /// Starts writing its bytes to the disk, without waiting.
    void startWriting();

    /// Waits until its bytes are on the disk, so that a power cut never leaves an entry in the trash with an empty
    /// record: journals commit in order, so the bytes arrive first. Much cheaper than also waiting for the journal.
    /// Returns an `errno` value.
    [[nodiscard]] int finishWriting();

    /// Call this when the entry is in the trash.
    void keep() { m_kept = true; }

private:
    TrashRecord(int info, QByteArray name, FileDescriptor file);

    [[nodiscard]] static QByteArray fileName(const QByteArray& name);

    int m_info;
    QByteArray m_name;
    FileDescriptor m_file;
    /// The `errno` value of a failed startWriting().
    int m_error = 0;
    bool m_kept = false;
};

} // namespace lapsa
