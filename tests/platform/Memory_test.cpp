// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Memory.h"
#include "ProcessFigures.h"

#include <QFile>
#include <QTest>

#include <unistd.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

qint64 residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no /proc");
    }
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

} // namespace

class MemoryTest final : public QObject
{
    Q_OBJECT

private slots:

    void whatWasFreedBelowSomethingThatStaysIsGivenBack()
    {
        if (!ProcessFigures::memoryTells) {
            QSKIP("the allocator is another one here");
        }
        // Small, so that the allocator takes them from its heap; the one that stays keeps it from shrinking by itself.
        constexpr std::size_t blockSize = 4000;
        constexpr std::size_t blocks = 10'000;
        using Block = std::vector<char>;
        auto freed = std::make_unique<std::vector<Block>>();
        for (std::size_t i = 0; i < blocks; ++i) {
            freed->emplace_back(blockSize, 'x');
        }
        const Block stays(blockSize, 'x');
        freed.reset();
        const qint64 before = residentBytes();

        giveBackFreedMemory();

        QVERIFY(before - residentBytes() > qint64(blockSize * blocks / 2));
        QCOMPARE(stays.front(), 'x');
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::MemoryTest)
#include "Memory_test.moc"
