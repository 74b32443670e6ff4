// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "WorkTexts.h"

#include <QTest>

#include <limits>

using namespace lapsa;
using namespace Qt::StringLiterals;

class WorkTexts_test final : public QObject
{
    Q_OBJECT

private slots:

    void everyWorkHasItsText_data();
    void everyWorkHasItsText();
    void progressIsKnownWithATotalOnly_data();
    void progressIsKnownWithATotalOnly();
};

namespace {

using Kind = ItemWork::Kind;

} // namespace

void WorkTexts_test::everyWorkHasItsText_data()
{
    QTest::addColumn<ItemWork>("work");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("italian");
    const auto row = [](const char* name, const ItemWork& work, const QString& english, const QString& italian) {
        QTest::newRow(name) << work << english << italian;
    };
    row("a copy", {Kind::Moving, 43, 100}, u"Moving… 43 %"_s, u"Spostamento… 43 %"_s);
    row("a copy that has just begun", {Kind::Moving, 0, 100}, u"Moving… 0 %"_s, u"Spostamento… 0 %"_s);
    row("a copy is not called whole before it is", {Kind::Moving, 999, 1000}, u"Moving… 99 %"_s,
        u"Spostamento… 99 %"_s);
    row("a copy that is whole", {Kind::Moving, 1000, 1000}, u"Moving… 100 %"_s, u"Spostamento… 100 %"_s);
    row("a file that grows meanwhile", {Kind::Moving, 2000, 1000}, u"Moving… 100 %"_s, u"Spostamento… 100 %"_s);
    row("a copy of unknown size", {Kind::Moving, 5000, 0}, u"Moving…"_s, u"Spostamento…"_s);
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    row("a copy as large as can be", {Kind::Moving, most / 2, most}, u"Moving… 50 %"_s, u"Spostamento… 50 %"_s);
    row("a removal", {Kind::Removing, 12400, 0}, u"Removing… 12,400 files"_s, u"Rimozione… 12.400 file"_s);
    row("a removal of one so far", {Kind::Removing, 1, 0}, u"Removing… 1 file"_s, u"Rimozione… 1 file"_s);
    row("a removal of none so far", {Kind::Removing, 0, 0}, u"Removing…"_s, u"Rimozione…"_s);
    row("a million", {Kind::Removing, 1234567, 0}, u"Removing… 1,234,567 files"_s, u"Rimozione… 1.234.567 file"_s);
    row("a disk that does not answer", {Kind::WaitingForDisk, 7, 9}, u"Waiting for the disk"_s,
        u"In attesa del disco"_s);
    row("a removal that was stopped", {Kind::Stopped, 12400, 0}, u"Stopped: 12,400 files left"_s,
        u"Interrotta: restano 12.400 file"_s);
    row("one that left a million", {Kind::Stopped, 1234567, 0}, u"Stopped: 1,234,567 files left"_s,
        u"Restano 1.234.567 file"_s);
    row("one that left one file", {Kind::Stopped, 1, 0}, u"Stopped: 1 file left"_s, u"Interrotta: resta 1 file"_s);
    row("one that left empty folders", {Kind::Stopped, 0, 0}, u"Stopped: 0 files left"_s,
        u"Interrotta: restano 0 file"_s);
    row("one that left nobody knows how many", {Kind::Stopped, -1, 0}, u"Stopped: files are left"_s,
        u"Interrotta: restano dei file"_s);
}

void WorkTexts_test::everyWorkHasItsText()
{
    QFETCH(const ItemWork, work);
    QFETCH(const QString, english);
    QFETCH(const QString, italian);
    {
        const test::Language language("en_US.UTF-8");
        QCOMPARE(workTexts::textFor(work), english);
    }
    const test::Language language("it_IT.UTF-8");
    QCOMPARE(workTexts::textFor(work), italian);
}

void WorkTexts_test::progressIsKnownWithATotalOnly_data()
{
    QTest::addColumn<ItemWork>("work");
    QTest::addColumn<bool>("known");
    QTest::addColumn<double>("progress");
    QTest::newRow("a copy") << ItemWork{Kind::Moving, 25, 100} << true << 0.25;
    QTest::newRow("more than there was") << ItemWork{Kind::Moving, 300, 100} << true << 1.0;
    QTest::newRow("a copy of unknown size") << ItemWork{Kind::Moving, 25, 0} << false << 0.0;
    QTest::newRow("a removal") << ItemWork{Kind::Removing, 25, 0} << false << 0.0;
    QTest::newRow("a removal that was stopped") << ItemWork{Kind::Stopped, 25, 0} << false << 0.0;
    QTest::newRow("a disk that does not answer") << ItemWork{Kind::WaitingForDisk, 25, 100} << false << 0.0;
}

void WorkTexts_test::progressIsKnownWithATotalOnly()
{
    QFETCH(const ItemWork, work);
    QFETCH(const bool, known);
    QFETCH(const double, progress);

    QCOMPARE(workTexts::progressOf(work), known ? std::optional(progress) : std::nullopt);
}

QTEST_MAIN(WorkTexts_test)
#include "WorkTexts_test.moc"
