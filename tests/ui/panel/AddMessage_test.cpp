// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddMessage.h"
#include "AddResult.h"
#include "PanelWorld.h"
#include "StoreWorld.h"
#include "TemporaryHome.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTest>

#include <memory>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

using fileSystem::Refusal;

Q_DECLARE_METATYPE(lapsa::fileSystem::Refusal)

namespace {

AddResult refusing(const QList<AddResult::Refused>& refused)
{
    return {.ids = {}, .newFolders = {}, .refused = refused};
}

AddResult adding(const QStringList& folders)
{
    return {.ids = {}, .newFolders = folders, .refused = {}};
}

/// Counted without haste.
std::optional<QString> messageOf(const AddResult& result, std::int64_t most = 1000)
{
    return addMessage(result, {.most = most, .deadline = QDeadlineTimer(QDeadlineTimer::Forever)});
}

QString inItalian(const AddResult& result, std::int64_t most = 1000)
{
    const Language italian("it_IT.UTF-8");
    return messageOf(result, most).value_or(QString());
}

} // namespace

class AddMessage_test final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        qputenv("LC_ALL", "en_GB.UTF-8");
        m_home = std::make_unique<TemporaryHome>();
    }

    void cleanup() { m_home.reset(); }

    void anAddOfFilesNeedsNoWords()
    {
        QCOMPARE(messageOf({.ids = {u"1"_s}, .newFolders = {}, .refused = {}}), std::nullopt);
    }

    void everyRefusalHasItsSentence_data()
    {
        QTest::addColumn<Refusal>("reason");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");
        const QString start = u"Impossibile avviare un conto alla rovescia per "_s;

        QTest::newRow("the root") << Refusal::Root << u"The root of the file system cannot be put on countdown."_s
                                  << start + u"la radice del file system."_s;
        QTest::newRow("the home folder") << Refusal::Home << u"Your home folder cannot be put on countdown."_s
                                         << start + u"la cartella home."_s;
        QTest::newRow("Lapsa's own folder")
            << Refusal::ProtectedFolder << u"Lapsa’s own folder cannot be put on countdown."_s
            << start + u"la cartella di Lapsa."_s;
        QTest::newRow("a disk") << Refusal::MountPoint << u"“USB” is a mounted disk and cannot be put on countdown."_s
                                << start + u"“USB”: è un disco montato."_s;
        QTest::newRow("what holds the home folder")
            << Refusal::HoldsHome << u"“USB” holds your home folder and cannot be put on countdown."_s
            << start + u"“USB”: contiene la cartella home."_s;
        QTest::newRow("what holds Lapsa's own folder")
            << Refusal::HoldsProtectedFolder << u"“USB” holds Lapsa’s own folder and cannot be put on countdown."_s
            << start + u"“USB”: contiene la cartella di Lapsa."_s;
        QTest::newRow("what holds a disk")
            << Refusal::HoldsMountPoint << u"“USB” holds a mounted disk and cannot be put on countdown."_s
            << start + u"“USB”: contiene un disco montato."_s;
    }

    void everyRefusalHasItsSentence()
    {
        QFETCH(const Refusal, reason);
        const AddResult result = refusing({{.path = u"/media/ada/USB"_s, .reason = reason}});

        QTEST(messageOf(result).value_or(QString()), "english");
        QTEST(inItalian(result), "italian");
    }

    void severalRefusalsAreNamed()
    {
        QList<AddResult::Refused> refused{{.path = u"/media/a"_s, .reason = Refusal::MountPoint},
                                          {.path = u"/media/100%1 %2"_s, .reason = Refusal::HoldsHome}};
        QCOMPARE(messageOf(refusing(refused)), u"“a” and “100%1 %2” cannot be put on countdown."_s);
        QCOMPARE(inItalian(refusing(refused)), u"Impossibile avviare un conto alla rovescia per “a” e “100%1 %2”."_s);

        refused.push_back({.path = u"/"_s, .reason = Refusal::Root});
        QCOMPARE(messageOf(refusing(refused)), u"“a” and 2 others cannot be put on countdown."_s);
        QCOMPARE(inItalian(refusing(refused)),
                 u"Impossibile avviare un conto alla rovescia per “a” e altri 2 elementi."_s);
    }

    void aFolderSaysWithHowManyFilesItGoes_data()
    {
        QTest::addColumn<int>("files");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");

        QTest::newRow("none") << 0 << u"“Downloads” goes as a whole: no files yet."_s
                              << u"“Downloads” verrà eliminata per intero: per ora nessun file."_s;
        QTest::newRow("one") << 1 << u"“Downloads” goes as a whole: 1 file."_s
                             << u"“Downloads” verrà eliminata per intero: 1 file."_s;
        QTest::newRow("eleven") << 11 << u"“Downloads” goes as a whole: 11 files."_s
                                << u"“Downloads” verrà eliminata per intero: 11 file."_s;
        QTest::newRow("as many as are counted") << 27 << u"“Downloads” goes as a whole: 27 files."_s
                                                << u"“Downloads” verrà eliminata per intero: 27 file."_s;
        QTest::newRow("more than are counted") << 28 << u"“Downloads” goes as a whole: more than 27 files."_s
                                               << u"“Downloads” verrà eliminata per intero: più di 27 file."_s;
    }

    void aFolderSaysWithHowManyFilesItGoes()
    {
        QFETCH(const int, files);
        const QString folder = m_home->makeFolder(u"Downloads"_s);
        for (int number = 0; number < files; ++number) {
            QVERIFY(QFile(folder + u'/' + QString::number(number)).open(QIODevice::WriteOnly));
        }

        QTEST(messageOf(adding({folder}), 27).value_or(QString()), "english");
        QTEST(inItalian(adding({folder}), 27), "italian");
    }

    void aNumberOnlyReachedIsRoundedDown()
    {
        m_home->makeFolder(u"folder"_s);
        for (int number = 0; number < 128; ++number) {
            QVERIFY(QFile(m_home->path(u"folder/%1"_s.arg(number))).open(QIODevice::WriteOnly));
        }

        QCOMPARE(messageOf(adding({m_home->path(u"folder"_s)}), 127),
                 u"“folder” goes as a whole: more than 120 files."_s);
    }

    void severalFoldersAreCountedWithinOneLimit()
    {
        for (int number = 0; number < 15; ++number) {
            m_home->makeFile(u"a/%1"_s.arg(number));
            m_home->makeFile(u"b/%1"_s.arg(number));
        }

        QCOMPARE(messageOf(adding({m_home->path(u"a"_s), m_home->path(u"b"_s)}), 20),
                 u"2 folders go as a whole: more than 20 files."_s);
    }

    void theWholeSystemIsNotCounted()
    {
        StoreWorld world;

        showAddMessage(world.store(), adding({u"/usr"_s}));

        const QString message = world.store().lastMessage().value_or(QString());
        QVERIFY2(message.contains(u"more than"_s) || message.endsWith(u"with everything in it."_s),
                 qPrintable(message));
    }

    void aFolderOfTooManyFoldersSaysNoNumber()
    {
        for (int number = 0; number < 5; ++number) {
            m_home->makeFolder(u"project/"_s + QString::number(number));
        }
        const AddResult one = adding({m_home->path(u"project"_s)});
        const AddResult two = adding({m_home->path(u"project"_s), m_home->makeFolder(u"other"_s)});

        QCOMPARE(messageOf(one, 4), u"“project” goes as a whole, with everything in it."_s);
        QCOMPARE(inItalian(one, 4), u"“project” verrà eliminata per intero, con tutto il suo contenuto."_s);
        QCOMPARE(messageOf(two, 4), u"2 folders go as a whole, with everything in them."_s);
        QCOMPARE(inItalian(two, 4), u"2 cartelle verranno eliminate per intero, con tutto il loro contenuto."_s);
    }

    void severalFoldersAreOneSentence()
    {
        m_home->makeFile(u"a/1"_s);
        m_home->makeFile(u"a/2"_s);
        m_home->makeFile(u"b/3"_s);
        const AddResult result = adding({m_home->path(u"a"_s), m_home->path(u"b"_s), m_home->makeFolder(u"empty"_s)});

        QCOMPARE(messageOf(result), u"3 folders go as a whole: 3 files."_s);
        QCOMPARE(inItalian(result), u"3 cartelle verranno eliminate per intero: 3 file."_s);
    }

    void aLinkToAFolderGoesAlone()
    {
        QVERIFY(QFile::link(m_home->makeFolder(u"folder"_s), m_home->path(u"link"_s)));

        QCOMPARE(messageOf(adding({m_home->path(u"link"_s)})), std::nullopt);
        QCOMPARE(messageOf(adding({m_home->path(u"link"_s), m_home->path(u"folder"_s)})),
                 u"“folder” goes as a whole: no files yet."_s);
    }

    void theRefusalComesFirst()
    {
        AddResult result = adding({m_home->makeFolder(u"Downloads"_s)});
        result.refused = {{.path = m_home->path(u"."_s).chopped(2), .reason = Refusal::Home}};

        QCOMPARE(messageOf(result),
                 u"Your home folder cannot be put on countdown. “Downloads” goes as a whole: no files yet."_s);
    }

    void besideAnotherSentenceThereIsRoomForLess()
    {
        AddResult result = adding({m_home->makeFolder(u"Quarterly reports of 2026"_s)});
        result.refused = {{.path = u"/media/ada/USB"_s, .reason = Refusal::HoldsMountPoint}};
        const QString folder = u"“Quarterly r…2026” goes as a whole: no files yet."_s;
        QCOMPARE(messageOf(result), u"“USB” cannot be put on countdown. "_s + folder);

        result.refused.push_back({.path = u"/"_s, .reason = Refusal::Root});
        QCOMPARE(messageOf(result), u"2 items cannot be put on countdown. "_s + folder);
        QVERIFY(inItalian(result).startsWith(u"Impossibile avviare un conto alla rovescia per 2 elementi. “"_s));
    }

    void aNameStaysInItsPlaceInTheSentence_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shown");

        QTest::newRow("line breaks") << u"a\nb\tc"_s << u"“a b c”"_s;
        QTest::newRow("long") << u"abcdefghijklmnopqrstuvwxyz0123456789"_s << u"“abcdefghijklmnopqrstuv…0123456789”"_s;
        QTest::newRow("as long as can be")
            << u"abcdefghijklmnopqrstuvwxyz012345"_s << u"“abcdefghijklmnopqrstuvwxyz012345”"_s;
        QTest::newRow("from right to left") << u"\u05D0\u05D1"_s << u"“\u2068\u05D0\u05D1\u2069”"_s;
    }

    void aNameStaysInItsPlaceInTheSentence()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, shown);

        QCOMPARE(messageOf(adding({m_home->makeFolder(name)})), shown + u" goes as a whole: no files yet."_s);
    }

private:
    std::unique_ptr<TemporaryHome> m_home;
};

QTEST_GUILESS_MAIN(AddMessage_test)

#include "AddMessage_test.moc"
