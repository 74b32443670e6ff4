// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ServedLapsa.h"

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFile>
#include <QUrl>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

const QString invalid = u"org.freedesktop.DBus.Error.InvalidArgs"_s;
constexpr qsizetype tooMany = 10'001;

QVariantList add(const QStringList& uris, int minutes = 0)
{
    return {uris, minutes};
}

/// Makes up calls, always the same ones.
class Mischief final
{
public:
    explicit Mischief(const QString& file)
        : m_texts{u""_s,
                  u"/"_s,
                  u"file:///"_s,
                  u"file://"_s,
                  u"file:relative"_s,
                  u"../../etc"_s,
                  u"file:///proc/self/mem%00x"_s,
                  u"file://elsewhere/etc/passwd"_s,
                  u"https://example.org/a"_s,
                  u"file:///%ff%fe"_s,
                  u"file:///dev/null/%2e%2e"_s,
                  u"{00000000-0000-0000-0000-000000000000}"_s,
                  u"A4C3F5B0-54D5-4D3C-93F2-4C8E6A1C1B11"_s,
                  QString(100'000, u'x'),
                  u"file:///"_s + QString(20'000, u'y'),
                  u"\u202eetad"_s,
                  u"%s%n%n"_s,
                  file}
    {}

    [[nodiscard]] QString method()
    {
        static const QStringList names{u"Items"_s,     u"Add"_s,     u"Lock"_s,    u"Remove"_s,
                                       u"Recovered"_s, u"PutBack"_s, u"Nothing"_s, u"add"_s};
        return names[number(names.size())];
    }

    [[nodiscard]] QVariantList arguments()
    {
        QVariantList list;
        for (qsizetype left = number(4); left > 0; --left) {
            list.push_back(argument());
        }
        return list;
    }

private:
    [[nodiscard]] qsizetype number(qsizetype below) { return qsizetype(m_random() % std::uint64_t(below)); }

    [[nodiscard]] QVariant argument()
    {
        switch (number(9)) {
        case 0:
            return m_texts[number(m_texts.size())];
        case 1:
            return int(m_random());
        case 2:
            return bool(number(2));
        case 3:
            return qulonglong(m_random());
        case 4:
            return QVariant::fromValue(QDBusVariant(m_texts[number(m_texts.size())]));
        case 5:
            return QVariant::fromValue(QDBusObjectPath(u"/a"_s));
        case 6:
            return QVariantMap{{u"id"_s, int(m_random())}};
        case 7:
            return double(m_random());
        default: {
            QStringList texts;
            for (qsizetype left = number(30); left > 0; --left) {
                texts.push_back(m_texts[number(m_texts.size())]);
            }
            return texts;
        }
        }
    }

    std::mt19937_64 m_random{20261123};
    QStringList m_texts;
};

} // namespace

/// Programs that call the interface with the worst that they can think of.
class Lapsa1HostileTest final : public ServedLapsa
{
    Q_OBJECT

private slots:

    void init()
    {
        beginServed();
        m_file = m_home->makeFile(u"kept.txt"_s);
        const QString expired = m_home->makeFile(u"expired.txt"_s);
        listExpired(expired);
        startLapsa();
        QTRY_COMPARE_WITH_TIMEOUT(answer(u"Recovered"_s).size(), 1, patience);
        const QString uri = QString::fromLatin1(QUrl::fromLocalFile(m_file).toEncoded());
        QCOMPARE(answer(u"Add"_s, add({uri}, 90)).size(), 1);
        m_items = answer(u"Items"_s);
        m_records = answer(u"Recovered"_s);
        QCOMPARE(m_items.size(), 1);
    }

    void cleanup() { endServed(); }

    void argumentsOutOfBoundsAreRefused_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        const QString there = u"file:///tmp"_s;
        const QString add1 = u"Add"_s;

        QTest::newRow("no file") << add1 << add({});
        QTest::newRow("a relative path") << add1 << add({u"notes.txt"_s});
        QTest::newRow("a path, not a URI") << add1 << add({u"/tmp"_s});
        QTest::newRow("a relative file URI") << add1 << add({u"file:notes.txt"_s});
        QTest::newRow("a page of the web") << add1 << add({u"https://example.org/a.zip"_s});
        QTest::newRow("a file of another machine") << add1 << add({u"file://elsewhere/tmp/a"_s});
        QTest::newRow("a NUL") << add1 << add({u"file:///tmp/a%00b"_s});
        QTest::newRow("bytes that are not UTF-8") << add1 << add({u"file:///tmp/%ff"_s});
        QTest::newRow("an empty text") << add1 << add({QString()});
        QTest::newRow("one bad among good ones") << add1 << add({there, u"notes.txt"_s});
        QTest::newRow("negative minutes") << add1 << add({there}, -1);
        QTest::newRow("the least minutes") << add1 << add({there}, std::numeric_limits<int>::min());
        QTest::newRow("more than a year") << add1 << add({there}, 525'601);
        QTest::newRow("a very long URI") << add1 << add({u"file:///"_s + QString(20'000, u'a')});
        QTest::newRow("too many URIs") << add1 << add(QStringList(tooMany, there));
        QTest::newRow("an unknown id to lock") << u"Lock"_s << QVariantList{u"unknown"_s, true};
        QTest::newRow("an empty id to lock") << u"Lock"_s << QVariantList{QString(), false};
        QTest::newRow("an unknown id to remove") << u"Remove"_s << QVariantList{u"../kept.txt"_s};
        QTest::newRow("no id to put back") << u"PutBack"_s << QVariantList{QStringList()};
        QTest::newRow("an id to put back that is none") << u"PutBack"_s << QVariantList{QStringList{u"x"_s}};
        QTest::newRow("an unknown id to put back")
            << u"PutBack"_s << QVariantList{QStringList{u"A4C3F5B0-54D5-4D3C-93F2-4C8E6A1C1B11"_s}};
        QTest::newRow("too many ids to put back") << u"PutBack"_s << QVariantList{QStringList(tooMany, u"x"_s)};
    }

    void argumentsOutOfBoundsAreRefused()
    {
        QFETCH(const QString, method);
        QFETCH(const QVariantList, arguments);

        const QDBusMessage reply = call(method, arguments);

        QCOMPARE(reply.errorName(), invalid);
        expectNothingHappened();
    }

    void oneIdTwiceOrBesideAnUnknownOneMovesNothing()
    {
        const QString id = m_records[0][u"id"_s].toString();

        QCOMPARE(call(u"PutBack"_s, {QStringList{id, id}}).errorName(), invalid);
        QCOMPARE(call(u"PutBack"_s, {QStringList{id, u"A4C3F5B0-54D5-4D3C-93F2-4C8E6A1C1B11"_s}}).errorName(), invalid);

        expectNothingHappened();
    }

    void otherTypesFindNoMethod_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");

        QTest::newRow("one URI, not a list") << u"Add"_s << QVariantList{u"file:///tmp"_s, 0};
        QTest::newRow("minutes as text") << u"Add"_s << QVariantList{QStringList{u"file:///tmp"_s}, u"90"_s};
        QTest::newRow("no minutes") << u"Add"_s << QVariantList{QStringList{u"file:///tmp"_s}};
        QTest::newRow("an argument too many to list") << u"Items"_s << QVariantList{1};
        QTest::newRow("an argument too many to list copies") << u"Recovered"_s << QVariantList{QStringList()};
        QTest::newRow("an argument too many to add")
            << u"Add"_s << QVariantList{QStringList{u"file:///tmp"_s}, 0, true};
        QTest::newRow("a lock without an id") << u"Lock"_s << QVariantList{true};
        QTest::newRow("a method that is none") << u"DeleteAll"_s << QVariantList();
    }

    void otherTypesFindNoMethod()
    {
        QFETCH(const QString, method);
        QFETCH(const QVariantList, arguments);

        QCOMPARE(call(method, arguments).errorName(), u"org.freedesktop.DBus.Error.UnknownMethod"_s);
        expectNothingHappened();
    }

    /// Thousands of made-up calls: each is an error, or does nothing.
    void madeUpCallsChangeNothing()
    {
        constexpr int calls = 3000;
        Mischief mischief(m_file);
        int errors = 0;
        for (int i = 0; i < calls; ++i) {
            const QString method = mischief.method();
            const QDBusMessage reply = call(method, mischief.arguments());
            const bool isError = reply.type() == QDBusMessage::ErrorMessage;
            QVERIFY2(isError || reply.type() == QDBusMessage::ReplyMessage, qUtf8Printable(method));
            QVERIFY2(reply.errorName() != u"org.freedesktop.DBus.Error.NoReply"_s, qUtf8Printable(method));
            errors += isError ? 1 : 0;
        }

        QVERIFY(errors > calls / 2);
        expectNothingHappened();
    }

    /// Callers that do not wait, and are gone when the answers come.
    void callersThatGoAwayHarmNobody()
    {
        for (int i = 0; i < 20; ++i) {
            const QString name = u"hasty%1"_s.arg(i);
            auto hasty = QDBusConnection::connectToBus(m_bus->address(), name);
            for (const QString& method : {u"Items"_s, u"Recovered"_s}) {
                for (int number = 0; number < 50; ++number) {
                    hasty.send(QDBusMessage::createMethodCall(busName(), objectPath(), interfaceName(), method));
                }
            }
            QDBusConnection::disconnectFromBus(name);
        }

        expectNothingHappened();
    }

private:
    void expectNothingHappened()
    {
        QCOMPARE(answer(u"Items"_s), m_items);
        QCOMPARE(answer(u"Recovered"_s), m_records);
        QVERIFY(QFile::exists(m_file));
        QVERIFY(m_lapsa->running());
    }

    QString m_file;
    Dictionaries m_items;
    Dictionaries m_records;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::Lapsa1HostileTest)
#include "Lapsa1_hostile_test.moc"
