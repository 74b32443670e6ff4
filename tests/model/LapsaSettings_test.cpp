// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDecoder.h"
#include "JSONEncoder.h"
#include "LapsaSettings.h"

#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

constexpr auto settingsBytes = R"({
  "autoCleanFolders" : [
    {
      "applyFileTypeRules" : true,
      "createdAt" : "2026-03-01T12:00:00Z",
      "enabled" : true,
      "folderPath" : "\/home\/ada\/Downloads",
      "id" : "00000000-0000-4000-8000-000000000002",
      "includeExistingFiles" : false,
      "lastScanAt" : "0001-01-01T00:00:00Z",
      "lifespanMinutes" : 10080
    }
  ],
  "defaultExpirationMinutes" : 120,
  "enableExpiryNotifications" : true,
  "fileTypeRules" : [
    {
      "enabled" : false,
      "extensionsCSV" : ".zip,.rar",
      "id" : "00000000-0000-4000-8000-000000000001",
      "lifespanMinutes" : 60
    }
  ],
  "keepPanelOpen" : true,
  "notifyBeforeMinutes" : 5,
  "pauseAllCountdowns" : false,
  "recoveryRetentionHours" : 24,
  "theme" : "dark",
  "useRecoveryWindow" : true,
  "useTrash" : true
}
)";

LapsaSettings sampleSettings()
{
    LapsaSettings settings;
    settings.theme = LapsaTheme::Dark;
    settings.fileTypeRules = {{.id = QUuid(u"00000000-0000-4000-8000-000000000001"_s),
                               .extensionsCSV = u".zip,.rar"_s,
                               .lifespanMinutes = 60,
                               .enabled = false}};
    settings.autoCleanFolders = {
        {.id = QUuid(u"00000000-0000-4000-8000-000000000002"_s),
         .folderPath = u"/home/ada/Downloads"_s,
         .createdAt = std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours{12}}};
    return settings;
}

std::optional<LapsaSettings> decoded(const QByteArray& bytes)
{
    return JSONDecoder::lapsa().decode<LapsaSettings>(bytes);
}

} // namespace

class LapsaSettings_test final : public QObject
{
    Q_OBJECT

private slots:

    void freshSettingsHoldTheDefaults()
    {
        const LapsaSettings settings;

        QCOMPARE(settings.defaultExpirationMinutes, 120);
        QVERIFY(settings.useTrash);
        QVERIFY(settings.keepPanelOpen);
        QVERIFY(!settings.pauseAllCountdowns);
        QVERIFY(settings.enableExpiryNotifications);
        QCOMPARE(settings.notifyBeforeMinutes, 5);
        QVERIFY(settings.useRecoveryWindow);
        QCOMPARE(settings.recoveryRetentionHours, 24);
        QCOMPARE(settings.theme, LapsaTheme::System);
        QVERIFY(settings.autoCleanFolders.isEmpty());
    }

    void freshSettingsHoldThreeFileTypeRules()
    {
        const QList<LapsaFileTypeRule> rules = LapsaSettings().fileTypeRules;

        QCOMPARE(rules.size(), 3);
        QCOMPARE(rules[0].extensionsCSV, u".zip,.rar,.7z"_s);
        QCOMPARE(rules[0].lifespanMinutes, 10080);
        QCOMPARE(rules[1].extensionsCSV, u".exe,.msi,.pkg,.dmg"_s);
        QCOMPARE(rules[1].lifespanMinutes, 20160);
        QCOMPARE(rules[2].extensionsCSV, u".png,.jpg,.jpeg,.webp"_s);
        QCOMPARE(rules[2].lifespanMinutes, 43200);
        for (const LapsaFileTypeRule& rule : rules) {
            QVERIFY(rule.enabled);
            QVERIFY(!rule.id.isNull());
        }
    }

    void theSharedDefaultsKeepTheirRuleIdsWhileFreshOnesDiffer()
    {
        QCOMPARE(LapsaSettings::defaults().fileTypeRules[0].id, LapsaSettings::defaults().fileTypeRules[0].id);
        QVERIFY(LapsaSettings().fileTypeRules[0].id != LapsaSettings::defaults().fileTypeRules[0].id);
    }

    void newRulesHoldTheirDefaults()
    {
        const LapsaFileTypeRule rule;
        QCOMPARE(rule.extensionsCSV, QString());
        QCOMPARE(rule.lifespanMinutes, 120);
        QVERIFY(rule.enabled);

        const LapsaAutoCleanFolderRule folder;
        QCOMPARE(folder.folderPath, QString());
        QCOMPARE(folder.lifespanMinutes, 10080);
        QVERIFY(folder.enabled);
        QVERIFY(!folder.includeExistingFiles);
        QVERIFY(folder.applyFileTypeRules);
        QCOMPARE(folder.lastScanAt, distantPast);
    }

    void themesHaveTheirTextsInOrder()
    {
        QStringList texts;
        for (const LapsaTheme theme : allLapsaThemes) {
            texts += rawValue(theme);
            QCOMPARE(lapsaThemeFromRawValue(rawValue(theme)), std::optional(theme));
        }

        QCOMPARE(texts, QStringList({u"system"_s, u"dark"_s, u"light"_s}));
    }

    void numbersOutOfRangeAreClamped_data()
    {
        QTest::addColumn<qint64>("given");
        QTest::addColumn<qint64>("lifespan");
        QTest::addColumn<qint64>("leadTime");
        QTest::addColumn<qint64>("retention");

        QTest::newRow("zero becomes the least") << qint64{0} << qint64{1} << qint64{1} << qint64{1};
        QTest::newRow("a negative number becomes the least") << qint64{-5} << qint64{1} << qint64{1} << qint64{1};
        QTest::newRow("90") << qint64{90} << qint64{90} << qint64{60} << qint64{90};
        QTest::newRow("500") << qint64{500} << qint64{500} << qint64{60} << qint64{168};
        QTest::newRow("600000") << qint64{600000} << qint64{525600} << qint64{60} << qint64{168};
        QTest::newRow("the bounds themselves") << qint64{1} << qint64{1} << qint64{1} << qint64{1};
    }

    void numbersOutOfRangeAreClamped()
    {
        QFETCH(qint64, given);
        LapsaSettings settings = sampleSettings();
        settings.defaultExpirationMinutes = given;
        settings.notifyBeforeMinutes = given;
        settings.recoveryRetentionHours = given;
        settings.fileTypeRules[0].lifespanMinutes = given; // a disabled rule
        settings.autoCleanFolders[0].lifespanMinutes = given;

        const LapsaSettings sanitized = sanitize(settings);

        QTEST(qint64{sanitized.defaultExpirationMinutes}, "lifespan");
        QTEST(qint64{sanitized.notifyBeforeMinutes}, "leadTime");
        QTEST(qint64{sanitized.recoveryRetentionHours}, "retention");
        QTEST(qint64{sanitized.fileTypeRules[0].lifespanMinutes}, "lifespan");
        QTEST(qint64{sanitized.autoCleanFolders[0].lifespanMinutes}, "lifespan");
    }

    void sanitizeLeavesEverythingElseAlone()
    {
        LapsaSettings settings = sampleSettings();
        settings.useTrash = false;
        settings.fileTypeRules[0].extensionsCSV = u" ;;, "_s;
        settings.autoCleanFolders[0].folderPath = u"not absolute"_s;

        QCOMPARE(sanitize(settings), settings);
    }

    void anEmptyRuleListStaysEmpty()
    {
        LapsaSettings settings;
        settings.fileTypeRules.clear();

        QVERIFY(sanitize(settings).fileTypeRules.isEmpty());
    }

    void settingsAreWrittenWithTheirKeysInOrder()
    {
        QCOMPARE(JSONEncoder::lapsa().encode(sampleSettings()), QByteArray(settingsBytes));
        QCOMPARE(decoded(settingsBytes), std::optional(sampleSettings()));
    }

    void decodingDoesNotClamp()
    {
        const QByteArray bytes = QByteArray(settingsBytes)
                                     .replace("\"notifyBeforeMinutes\" : 5", //
                                              "\"notifyBeforeMinutes\" : -90");

        QCOMPARE(decoded(bytes)->notifyBeforeMinutes, -90);
    }

    void anyOtherThemeTextIsRefused()
    {
        for (const char* text : {"\"Dark\"", "\"\"", "\"auto\"", "null", "1"}) {
            QCOMPARE(decoded(QByteArray(settingsBytes).replace("\"dark\"", text)), std::nullopt);
        }
    }

    void settingsThatLackAnyKeyAreRefused()
    {
        const QList<QByteArray> lines = QByteArray(settingsBytes).split('\n');
        int tried = 0;
        for (const QByteArray& line : lines) {
            if (!line.contains(" : ")) {
                continue;
            }
            // Renaming the key is leaving it out, and adding one that nobody knows.
            QByteArray renamed = line;
            renamed.insert(line.indexOf('"') + 1, "no-");
            QVERIFY2(!decoded(QByteArray(settingsBytes).replace(line + '\n', renamed + '\n')), line.constData());
            ++tried;
        }
        QCOMPARE(tried, 11 + 4 + 8);
    }

    void theDistantPastOfANewFolderSurvivesTheFile()
    {
        LapsaSettings settings;
        settings.autoCleanFolders = {{.folderPath = u"/home/ada/Downloads"_s}};

        const QByteArray bytes = JSONEncoder::lapsa().encode(settings);

        QVERIFY(bytes.contains("\"lastScanAt\" : \"0001-01-01T00:00:00Z\""));
        QCOMPARE(decoded(bytes)->autoCleanFolders[0].lastScanAt, distantPast);
    }
};

QTEST_GUILESS_MAIN(LapsaSettings_test)

#include "LapsaSettings_test.moc"
