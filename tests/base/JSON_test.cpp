// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDecoder.h"
#include "JSONEncoder.h"

#include <QTest>

#include <limits>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

/// A record with a field of each kind.
struct Sample
{
    bool flag = false;
    QUuid id;
    std::int64_t number = 0;
    QString text;
    TimePoint time;

    friend bool operator==(const Sample&, const Sample&) = default;
};

void write(JSONEncoder& encoder, const Sample& sample)
{
    encoder.beginObject();
    encoder.field("flag", sample.flag);
    encoder.field("id", sample.id);
    encoder.field("number", sample.number);
    encoder.field("text", sample.text);
    encoder.field("time", sample.time);
    encoder.endObject();
}

void read(const JSONObject& object, Sample& sample)
{
    sample.flag = object.boolean("flag");
    sample.id = object.uuid("id");
    sample.number = object.integer("number");
    sample.text = object.text("text");
    sample.time = object.timestamp("time");
}

struct Nested
{
    QList<Sample> samples;

    friend bool operator==(const Nested&, const Nested&) = default;
};

void write(JSONEncoder& encoder, const Nested& nested)
{
    encoder.beginObject();
    encoder.field("samples", nested.samples);
    encoder.endObject();
}

void read(const JSONObject& object, Nested& nested)
{
    nested.samples = object.list<Sample>("samples");
}

Sample sample()
{
    return {.flag = true,
            .id = QUuid(u"6f1c9d3e-0a2b-4c5d-8e7f-001122334455"_s),
            .number = -7,
            .text = u"/tmp/a b"_s,
            .time = std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};
}

constexpr auto sampleBytes = R"({
  "flag" : true,
  "id" : "6F1C9D3E-0A2B-4C5D-8E7F-001122334455",
  "number" : -7,
  "text" : "\/tmp\/a b",
  "time" : "2026-03-01T00:00:00Z"
}
)";

constexpr auto compactBytes = R"({"time":"2026-03-01T00:00:00Z","text":"/tmp/a b","number":-7,"flag":true,)"
                              R"("id":"6F1C9D3E-0A2B-4C5D-8E7F-001122334455"})";
constexpr auto unknownKeys = R"("later" : {"deep" : [null, 1.5e3]}, "number")";

QByteArray replaced(const char* before, const char* after)
{
    QByteArray bytes(sampleBytes);
    Q_ASSERT(bytes.contains(before));
    return bytes.replace(before, after);
}

std::optional<Sample> decoded(const QByteArray& bytes)
{
    return JSONDecoder::lapsa().decode<Sample>(bytes);
}

} // namespace

class JSON_test final : public QObject
{
    Q_OBJECT

private slots:

    void aRecordIsWrittenIndentedWithSortedKeysAndEscapedSlashes()
    {
        QCOMPARE(JSONEncoder::lapsa().encode(sample()), QByteArray(sampleBytes));
    }

    void anEmptyListIsAnEmptyArray()
    {
        QCOMPARE(JSONEncoder::lapsa().encode(QList<Sample>{}), QByteArray("[]\n"));
        QCOMPARE(JSONDecoder::lapsa().decodeList<Sample>("[]"), std::optional(QList<Sample>{}));
    }

    void aListInsideARecordIsWrittenAndReadBack()
    {
        const Nested nested{.samples = {sample(), sample()}};

        const QByteArray bytes = JSONEncoder::lapsa().encode(nested);

        QVERIFY(bytes.startsWith("{\n  \"samples\" : [\n    {\n      \"flag\" : true,\n"));
        QCOMPARE(JSONDecoder::lapsa().decode<Nested>(bytes), std::optional(nested));
    }

    void everyTextIsReadBackAsItWas_data()
    {
        QTest::addColumn<QString>("text");

        QTest::newRow("empty") << QString(u""_s);
        QTest::newRow("quotes and backslashes") << u"\"\\\"\\\\"_s;
        QTest::newRow("slashes") << u"/a//b\\/"_s;
        QTest::newRow("line breaks and tabs") << u"a\nb\r\n\tc"_s;
        QTest::newRow("other control characters") << u"\u0001\u001f\u007f\b\f"_s;
        QTest::newRow("a null character") << QString(u"a\0b"_s);
        QTest::newRow("beyond ASCII") << u"verrà • 漢字 • 🗂"_s;
        QTest::newRow("a byte order mark in front") << u"\uFEFFnotes.txt"_s;
        QTest::newRow("separators of lines and paragraphs") << u"\u2028\u2029"_s;
    }

    void everyTextIsReadBackAsItWas()
    {
        QFETCH(QString, text);
        Sample written = sample();
        written.text = text;

        QCOMPARE(decoded(JSONEncoder::lapsa().encode(written)), std::optional(written));
    }

    void controlCharactersAreEscaped()
    {
        Sample written = sample();
        written.text = u"\n\t\r\b\f\"\\/\u0001\u001f"_s;

        QVERIFY(JSONEncoder::lapsa().encode(written).contains("\"\\n\\t\\r\\b\\f\\\"\\\\\\/\\u0001\\u001f\""));
    }

    void theFarthestIntegersAreReadBack()
    {
        for (const std::int64_t number :
             {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
            Sample written = sample();
            written.number = number;
            QCOMPARE(decoded(JSONEncoder::lapsa().encode(written)), std::optional(written));
        }
    }

    void anotherFormOfTheSameDocumentIsReadAlike_data()
    {
        QTest::addColumn<QByteArray>("bytes");

        QTest::newRow("plain slashes") << replaced("\\/tmp\\/a b", "/tmp/a b");
        QTest::newRow("unknown keys") << replaced("\"number\"", unknownKeys);
        QTest::newRow("a lower-case UUID") << QByteArray(sampleBytes).replace("6F1C9D3E", "6f1c9d3e");
        QTest::newRow("numeric escapes") << replaced("\\/tmp", "\\u002Ftmp");
        QTest::newRow("no blanks at all") << QByteArray(compactBytes);
    }

    void anotherFormOfTheSameDocumentIsReadAlike()
    {
        QFETCH(QByteArray, bytes);

        QCOMPARE(decoded(bytes), std::optional(sample()));
    }

    void whatIsNotExactlyAskedForIsRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");

        QTest::newRow("nothing at all") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("lapsa");
        QTest::newRow("a missing key") << replaced("  \"number\" : -7,\n", "");
        QTest::newRow("null in place of a boolean") << replaced("true", "null");
        QTest::newRow("a number in place of a boolean") << replaced("true", "1");
        QTest::newRow("a text in place of a boolean") << replaced("true", "\"true\"");
        QTest::newRow("a text in place of a number") << replaced("-7", "\"-7\"");
        QTest::newRow("a fraction in place of an integer") << replaced("-7", "-7.0");
        QTest::newRow("an exponent in place of an integer") << replaced("-7", "7e0");
        QTest::newRow("a boolean in place of an integer") << replaced("-7", "true");
        QTest::newRow("an integer beyond 64 bits") << replaced("-7", "9223372036854775808");
        QTest::newRow("a number in place of a text") << replaced("\"\\/tmp\\/a b\"", "1");
        QTest::newRow("an array in place of a text") << replaced("\"\\/tmp\\/a b\"", "[]");
        QTest::newRow("a date with a fraction") << replaced("00:00:00Z", "00:00:00.5Z");
        QTest::newRow("a date as a number") << replaced("\"2026-03-01T00:00:00Z\"", "1772323200");
        QTest::newRow("a UUID in braces")
            << QByteArray(sampleBytes).replace("\"6F1C", "\"{6F1C").replace("4455\"", "4455}\"");
        QTest::newRow("a UUID without hyphens") << replaced("6F1C9D3E-0A2B-4C5D-8E7F-", "6F1C9D3E0A2B4C5D8E7F");
        QTest::newRow("a UUID with another letter") << replaced("6F1C", "6G1C");
        QTest::newRow("something after the document") << sampleBytes + QByteArray("x");
        QTest::newRow("a second document") << sampleBytes + QByteArray(sampleBytes);
        QTest::newRow("an array in its place") << '[' + QByteArray(sampleBytes) + ']';
        QTest::newRow("a comma too many") << replaced("00:00Z\"", "00:00Z\",");
        QTest::newRow("a comment") << replaced("true,", "true, // locked");
        QTest::newRow("a text that is not UTF-8") << replaced("a b", "a\xE9 b");
        QTest::newRow("an unknown key that is not UTF-8") << replaced("\"number\"", "\"\xFF\" : 0, \"number\"");
        QTest::newRow("a lone surrogate") << replaced("a b", "\\uD800");
        QTest::newRow("a lone second surrogate") << replaced("a b", "\\uDC00");
        QTest::newRow("a bare line break in a text") << replaced("a b", "a\nb");
        QTest::newRow("brackets without end") << QByteArray(100'000, '[');
    }

    void whatIsNotExactlyAskedForIsRefused()
    {
        QFETCH(QByteArray, bytes);

        QCOMPARE(decoded(bytes), std::nullopt);
    }

    void aDocumentCutOffAnywhereIsRefused()
    {
        const QByteArray whole = QByteArray(sampleBytes).trimmed();

        for (qsizetype length = 0; length < whole.size(); ++length) {
            QCOMPARE(decoded(whole.left(length)), std::nullopt);
        }
        QVERIFY(decoded(whole));
    }

    void oneBadRecordOfAListRefusesThemAll_data()
    {
        QTest::addColumn<QByteArray>("bad");

        QTest::newRow("a record without a key") << replaced("  \"flag\" : true,\n", "");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("a list") << QByteArray("[]");
    }

    void oneBadRecordOfAListRefusesThemAll()
    {
        QFETCH(QByteArray, bad);
        const QByteArray good(sampleBytes);

        QCOMPARE(JSONDecoder::lapsa().decodeList<Sample>('[' + good + ',' + bad + ']'), std::nullopt);
        QVERIFY(JSONDecoder::lapsa().decodeList<Sample>('[' + good + ',' + good + ']'));
    }

    void anObjectInPlaceOfAListIsRefused()
    {
        QCOMPARE(JSONDecoder::lapsa().decodeList<Sample>(sampleBytes), std::nullopt);
        QCOMPARE(JSONDecoder::lapsa().decode<Nested>("{\"samples\" : {}}"), std::nullopt);
        QCOMPARE(JSONDecoder::lapsa().decode<Nested>("{}"), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(JSON_test)

#include "JSON_test.moc"
