// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDecoder.h"
#include "JSONEncoder.h"
#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr TimePoint noon = std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + 12h;

LapsaItem sampleItem()
{
    return {.id = u"9C5B2A10-1111-4222-8333-444455556666"_s,
            .path = u"/home/ada/report.zip"_s,
            .displayName = u"report.zip"_s,
            .addedAt = noon,
            .expiresAt = noon + 2h,
            .locked = true,
            .fiveMinuteWarningSent = false};
}

constexpr auto sampleItemBytes = R"([
  {
    "addedAt" : "2026-03-01T12:00:00Z",
    "displayName" : "report.zip",
    "expiresAt" : "2026-03-01T14:00:00Z",
    "fiveMinuteWarningSent" : false,
    "id" : "9C5B2A10-1111-4222-8333-444455556666",
    "locked" : true,
    "path" : "\/home\/ada\/report.zip"
  }
]
)";

LapsaRecoveryItem sampleRecoveryItem()
{
    return {.id = QUuid(u"9c5b2a10-1111-4222-8333-44445555abcd"_s),
            .originalPath = u"/home/ada/report.zip"_s,
            .recoveryPath = u"/home/ada/.local/share/Lapsa/Recovery/report.zip"_s,
            .displayName = u"report.zip"_s,
            .deletedAt = noon,
            .purgeAfter = noon + 24h};
}

constexpr auto sampleRecoveryBytes = R"([
  {
    "deletedAt" : "2026-03-01T12:00:00Z",
    "displayName" : "report.zip",
    "id" : "9C5B2A10-1111-4222-8333-44445555ABCD",
    "originalPath" : "\/home\/ada\/report.zip",
    "purgeAfter" : "2026-03-02T12:00:00Z",
    "recoveryPath" : "\/home\/ada\/.local\/share\/Lapsa\/Recovery\/report.zip"
  }
]
)";

QByteArray encoded(const QList<LapsaItem>& items)
{
    return JSONEncoder::lapsa().encode(items);
}

std::optional<QList<LapsaItem>> decoded(const QByteArray& bytes)
{
    return JSONDecoder::lapsa().decodeList<LapsaItem>(bytes);
}

/// Every line that holds a field, as rows named by the field.
void addFieldRows(const char* bytes)
{
    QTest::addColumn<QByteArray>("line");
    for (const QByteArray& line : QByteArray(bytes).split('\n')) {
        if (line.contains(" : ")) {
            QTest::newRow(line.trimmed().split('"').at(1).constData()) << line;
        }
    }
}

/// The document without a line, and without the comma that this may leave over.
QByteArray without(const char* bytes, const QByteArray& line)
{
    return QByteArray(bytes).replace(line + '\n', "").replace(",\n  }", "\n  }");
}

/// The document with another value in a line.
QByteArray withValue(const char* bytes, const QByteArray& line, const char* value)
{
    const bool last = !line.endsWith(',');
    return QByteArray(bytes).replace(line, line.left(line.indexOf(" : ") + 3) + value + (last ? "" : ","));
}

} // namespace

class LapsaItem_test final : public QObject
{
    Q_OBJECT

private slots:

    void aPathWithDoubledSlashesIsAFileOfThisMachine()
    {
        const LapsaItem item{.id = {}, .path = u"//home/ada/w"_s, .displayName = {}, .addedAt = {}, .expiresAt = {}};

        QCOMPARE(item.url(), QUrl::fromLocalFile(u"/home/ada/w"_s));
    }

    void anItemWhoseTimeIsNowHasNoSecondsLeftAndIsExpired()
    {
        const LapsaItem item = sampleItem();

        QCOMPARE(item.remainingSeconds(item.expiresAt), 0.0);
        QVERIFY(item.isExpired(item.expiresAt));
        QVERIFY(!item.isExpired(item.expiresAt - 1us));
    }

    void remainingSecondsAreNeverNegative()
    {
        const LapsaItem item = sampleItem();

        QCOMPARE(item.remainingSeconds(item.expiresAt + 1h), 0.0);
        QCOMPARE(item.remainingSeconds(item.expiresAt - 1500ms), 1.5);
    }

    void anItemWhoseFileIsGoneKeepsItsOtherFields()
    {
        const test::TemporaryHome home;
        LapsaItem item = sampleItem();
        item.path = home.makeFile(u"report.zip"_s);
        const LapsaItem before = item;
        QVERIFY(item.exists());
        QVERIFY(!item.isDirectory());

        QVERIFY(QFile::remove(item.path));

        QVERIFY(!item.exists());
        QVERIFY(!item.isDirectory());
        QCOMPARE(item, before);
        QCOMPARE(item.url(), QUrl::fromLocalFile(item.path));
    }

    void aFolderIsADirectoryThatExists()
    {
        const test::TemporaryHome home;
        LapsaItem item = sampleItem();
        item.path = home.makeFolder(u"photos"_s);

        QVERIFY(item.exists());
        QVERIFY(item.isDirectory());
    }

    void aNewIdIsAnUpperCaseUuidOfItsOwn()
    {
        static const QRegularExpression form(
            u"^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"_s);

        const QString id = newItemId();

        QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
        QVERIFY(id != newItemId());
    }

    void anItemIsWrittenWithItsKeysInOrder()
    {
        QCOMPARE(encoded({sampleItem()}), QByteArray(sampleItemBytes));
        QCOMPARE(decoded(sampleItemBytes), std::optional(QList{sampleItem()}));
    }

    void aRecoveryItemIsWrittenWithItsKeysInOrder()
    {
        QCOMPARE(JSONEncoder::lapsa().encode(QList{sampleRecoveryItem()}), QByteArray(sampleRecoveryBytes));
        QCOMPARE(JSONDecoder::lapsa().decodeList<LapsaRecoveryItem>(sampleRecoveryBytes),
                 std::optional(QList{sampleRecoveryItem()}));
    }

    void aFractionOfASecondDoesNotSurviveTheFile()
    {
        LapsaItem item = sampleItem();
        item.addedAt = noon + 900ms;

        QCOMPARE(decoded(encoded({item}))->first().addedAt, noon);
    }

    void anIdThatIsNoUuidIsKeptAsItIs()
    {
        LapsaItem item = sampleItem();
        item.id = u"my own id"_s;

        QCOMPARE(decoded(encoded({item})), std::optional(QList{item}));
    }

    void itemsKeepTheirOrder()
    {
        QList<LapsaItem> items;
        for (const QString& name : {u"b"_s, u"c"_s, u"a"_s}) {
            items.push_back(sampleItem());
            items.last().displayName = name;
        }

        QCOMPARE(decoded(encoded(items)), std::optional(items));
    }

    void anEmptyListIsAnEmptyArray() { QCOMPARE(encoded({}).trimmed(), QByteArray("[]")); }

    void anItemThatLacksAKeyIsRefused_data() { addFieldRows(sampleItemBytes); }

    void anItemThatLacksAKeyIsRefused()
    {
        QFETCH(QByteArray, line);

        QCOMPARE(decoded(without(sampleItemBytes, line)), std::nullopt);
    }

    void anItemWithAMistypedValueIsRefused_data() { addFieldRows(sampleItemBytes); }

    void anItemWithAMistypedValueIsRefused()
    {
        QFETCH(QByteArray, line);

        for (const char* value : {"null", "12", "[]", "{}", "1.5"}) {
            QCOMPARE(decoded(withValue(sampleItemBytes, line, value)), std::nullopt);
        }
    }

    void aRecoveryItemThatLacksAKeyIsRefused_data() { addFieldRows(sampleRecoveryBytes); }

    void aRecoveryItemThatLacksAKeyIsRefused()
    {
        QFETCH(QByteArray, line);

        QCOMPARE(JSONDecoder::lapsa().decodeList<LapsaRecoveryItem>(without(sampleRecoveryBytes, line)), std::nullopt);
    }

    void aRecoveryItemWithAMistypedValueIsRefused_data() { addFieldRows(sampleRecoveryBytes); }

    void aRecoveryItemWithAMistypedValueIsRefused()
    {
        QFETCH(QByteArray, line);

        for (const char* value : {"null", "12", "true", "[]"}) {
            QCOMPARE(JSONDecoder::lapsa().decodeList<LapsaRecoveryItem>(withValue(sampleRecoveryBytes, line, value)),
                     std::nullopt);
        }
    }
};

QTEST_GUILESS_MAIN(LapsaItem_test)

#include "LapsaItem_test.moc"
