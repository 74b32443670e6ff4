// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ProcessFigures.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <malloc.h>
#include <unistd.h>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

qint64 residentPages()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no /proc");
    }
    return file.readAll().split(' ').value(1).toLongLong();
}

} // namespace

ProcessFigures ProcessFigures::now()
{
    ::malloc_trim(0);
    return {
        .allocatedBytes = static_cast<qint64>(::mallinfo2().uordblks),
        .residentBytes = residentBytesUntouched(),
        .descriptors =
            QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(),
    };
}

qint64 ProcessFigures::residentBytesUntouched()
{
    return residentPages() * ::sysconf(_SC_PAGESIZE);
}

} // namespace lapsa::test
