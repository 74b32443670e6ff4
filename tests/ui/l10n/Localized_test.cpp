// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Localized.h"

#include <QTest>

#include <array>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

void setLocale(const QByteArray& all, const QByteArray& messages, const QByteArray& lang)
{
    qputenv("LC_ALL", all);
    qputenv("LC_MESSAGES", messages);
    qputenv("LANG", lang);
}

constexpr std::array properties{
    Localized::openLapsa,
    Localized::preferences,
    Localized::addFinderSelection,
    Localized::openDataFolder,
    Localized::quit,
    Localized::notificationTitle,
    Localized::notificationBody,
    Localized::temporaryCountdowns,
    Localized::dropFiles,
    Localized::defaultExpiry,
    Localized::filesPresent,
    Localized::filePresent,
    Localized::nothingHere,
    Localized::pauseAll,
    Localized::recovery,
    Localized::useRecovery,
    Localized::retention,
    Localized::fileTypeRules,
    Localized::autoCleanFolders,
    Localized::daysShort,
    Localized::hoursShort,
    Localized::minutesShort,
    Localized::durationDays,
    Localized::durationHours,
    Localized::durationMinutes,
};

} // namespace

class Localized_test final : public QObject
{
    Q_OBJECT

private slots:

    void italianIsTheLanguageCodeItAndNothingElse_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<bool>("italian");

        QTest::newRow("Italian of Italy") << QByteArray("it_IT.UTF-8") << true;
        QTest::newRow("Italian of Switzerland") << QByteArray("it_CH.UTF-8") << true;
        QTest::newRow("Italian of nowhere") << QByteArray("it") << true;
        QTest::newRow("Italian with a modifier") << QByteArray("it@euro") << true;
        QTest::newRow("English for Italy") << QByteArray("en_IT.UTF-8") << false;
        QTest::newRow("another language with the same beginning") << QByteArray("ita_IT") << false;
        QTest::newRow("upper case") << QByteArray("IT_it") << false;
        QTest::newRow("no language: C") << QByteArray("C.UTF-8") << false;
        QTest::newRow("no language: POSIX") << QByteArray("POSIX") << false;
        QTest::newRow("nothing at all") << QByteArray() << false;
    }

    void italianIsTheLanguageCodeItAndNothingElse()
    {
        QFETCH(QByteArray, locale);
        setLocale("", "", locale);

        QTEST(Localized::isItalian(), "italian");
    }

    void theFirstVariableThatSaysSomethingDecides()
    {
        setLocale("en_GB.UTF-8", "it_IT.UTF-8", "it_IT.UTF-8");
        QVERIFY(!Localized::isItalian());
        setLocale("", "it_IT.UTF-8", "en_GB.UTF-8");
        QVERIFY(Localized::isItalian());
        setLocale("", "", "it_IT.UTF-8");
        QVERIFY(Localized::isItalian());
    }

    void theListOfPreferredLanguagesIsNotRead()
    {
        setLocale("", "", "en_GB.UTF-8");
        qputenv("LANGUAGE", "it");

        QVERIFY(!Localized::isItalian());
        qunsetenv("LANGUAGE");
    }

    void everyTextExistsInBothLanguages()
    {
        for (const auto property : properties) {
            setLocale("", "", "en_GB.UTF-8");
            QVERIFY(!property().isEmpty());
            setLocale("", "", "it_IT.UTF-8");
            QVERIFY(!property().isEmpty());
        }
    }

    void theNotificationFormatsAreExactlyTheGivenOnes()
    {
        setLocale("", "", "en_GB.UTF-8");
        QCOMPARE(Localized::notificationTitle(), u"Lapsa alert"_s);
        QCOMPARE(Localized::notificationBody(), u"%@ will self-destruct in %d minutes."_s);
        setLocale("", "", "it_IT.UTF-8");
        QCOMPARE(Localized::notificationTitle(), u"Avviso Lapsa"_s);
        QCOMPARE(Localized::notificationBody(), u"%@ verrà eliminato tra %d minuti."_s);
    }

    void numbersAreGroupedAsTheLanguageGroupsThem()
    {
        setLocale("", "", "en_IT.UTF-8");
        QCOMPARE(Localized::number(999), u"999"_s);
        QCOMPARE(Localized::number(1290), u"1,290"_s);
        setLocale("", "", "it_CH.UTF-8");
        QCOMPARE(Localized::number(1290), u"1.290"_s);
    }

    void aChangeOfTheLocaleShowsAtTheNextRead()
    {
        setLocale("", "", "en_GB.UTF-8");
        QCOMPARE(Localized::quit(), u"Quit"_s);
        setLocale("", "", "it_IT.UTF-8");
        QCOMPARE(Localized::quit(), u"Esci"_s);
        QCOMPARE(Localized::useRecovery(), u"Usa finestra di recupero prima dell’eliminazione"_s);
    }
};

QTEST_GUILESS_MAIN(Localized_test)

#include "Localized_test.moc"
