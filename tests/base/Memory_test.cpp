// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Memory.h"
#include "ProcessFigures.h"

#include <QTest>

#include <memory>
#include <vector>

namespace lapsa::test {

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
        const qint64 before = ProcessFigures::residentBytesUntouched();

        giveBackFreedMemory();

        QVERIFY(before - ProcessFigures::residentBytesUntouched() > qint64(blockSize * blocks / 2));
        QCOMPARE(stays.front(), 'x');
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::MemoryTest)
#include "Memory_test.moc"
