// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderTexts.h"
#include "PanelWorld.h"

#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

using folderTexts::Certainty;
using watchedFolder::Outlook;

class FolderTextsTest final : public QObject
{
    Q_OBJECT

private slots:

    void existingFilesAreToldBeforeTheyGo_data()
    {
        QTest::addColumn<qint64>("present");
        QTest::addColumn<qint64>("taken");
        QTest::addColumn<qint64>("shortest");
        QTest::addColumn<qint64>("longest");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");
        const auto row = [](const char* name, qint64 present, qint64 taken,
                            const std::pair<qint64, qint64>& minutes) -> QTestData& {
            return QTest::newRow(name) << present << taken << minutes.first << minutes.second;
        };
        row("none", 0, 0, {0, 0}) << u"No files here."_s << u"Nessun file qui."_s;
        row("one", 1, 1, {120, 120}) << u"1 file here, it would go in 2h."_s
                                     << u"1 file qui, verrebbe eliminato tra 2h."_s;
        row("one on countdown", 1, 0, {0, 0})
            << u"1 file here, on countdown."_s << u"1 file qui, con il conto alla rovescia."_s;
        row("all on countdown", 3, 0, {0, 0})
            << u"3 files here, all on countdown."_s << u"3 file qui, tutti con il conto alla rovescia."_s;
        row("some", 11, 7, {120, 120}) << u"11 files here, 7 of them would go in 2h."_s
                                       << u"11 file qui, 7 verrebbero eliminati tra 2h."_s;
        row("one of them", 11, 1, {120, 120})
            << u"11 files here, 1 of them would go in 2h."_s << u"11 file qui, 1 verrebbe eliminato tra 2h."_s;
        row("all, in days", 4, 4, {1500, 1500}) << u"4 files here, all of them would go in 1d 1h."_s
                                                << u"4 file qui, tutti verrebbero eliminati tra 1g 1h."_s;
        row("at different times", 4, 3, {30, 10080}) << u"4 files here, 3 of them would go, the first in 30min."_s
                                                     << u"4 file qui, 3 verrebbero eliminati, il primo tra 30min."_s;
        row("more than are looked at", 2001, 2001, {120, 120})
            << u"More than 2000 files here, all of them would go in 2h."_s
            << u"Più di 2000 file qui, tutti verrebbero eliminati tra 2h."_s;
    }

    void existingFilesAreToldBeforeTheyGo()
    {
        QFETCH(const qint64, present);
        QFETCH(const qint64, taken);
        QFETCH(const qint64, shortest);
        QFETCH(const qint64, longest);
        const Outlook outlook{
            .present = present, .taken = taken, .shortestMinutes = shortest, .longestMinutes = longest};

        {
            const Language language("en_GB.UTF-8");
            QTEST(folderTexts::existingFiles(outlook, Certainty::Would), "english");
        }
        const Language language("it_IT.UTF-8");
        QTEST(folderTexts::existingFiles(outlook, Certainty::Would), "italian");
    }

    void whatIsIncludedWillGo()
    {
        const Outlook outlook{.present = 11, .taken = 7, .shortestMinutes = 120, .longestMinutes = 120};
        {
            const Language language("en_GB.UTF-8");
            QCOMPARE(folderTexts::existingFiles(outlook, Certainty::Will),
                     u"11 files here, 7 of them will go in 2h."_s);
        }
        const Language language("it_IT.UTF-8");
        QCOMPARE(folderTexts::existingFiles(outlook, Certainty::Will), u"11 file qui, 7 verranno eliminati tra 2h."_s);
    }

    void theRulesAreNamedWithTheDefault()
    {
        {
            const Language language("en_GB.UTF-8");
            QCOMPARE(folderTexts::byTheRules(120), u"By the rules; other files 2h."_s);
        }
        const Language language("it_IT.UTF-8");
        QCOMPARE(folderTexts::byTheRules(1440), u"Secondo le regole; altri file 1g."_s);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FolderTextsTest)
#include "FolderTexts_test.moc"
