// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryMessages.h"
#include "RecoveryTexts.h"

#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr TimePoint now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 1};

LapsaRecoveryItem recordOf(const QString& path)
{
    return {.id = QUuid::createUuid(),
            .originalPath = path,
            .recoveryPath = u"/x"_s,
            .displayName = path.mid(path.lastIndexOf(u'/') + 1),
            .deletedAt = now,
            .purgeAfter = now + 24h};
}

RecoveryResult failedWith(int code)
{
    return {.id = {}, .error = FileError::fromErrno(code)};
}

} // namespace

class RecoveryMessages_test final : public QObject
{
    Q_OBJECT

private slots:

    void cleanup() { qputenv("LC_ALL", "C.UTF-8"); }

    void eachResultIsOneSentence_data()
    {
        QTest::addColumn<RecoveryResult>("result");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");

        QTest::newRow("back") << RecoveryResult{.id = {}, .path = u"/d/a.zip"_s} << u"a.zip is back in /d."_s
                              << u"a.zip è di nuovo in /d."_s;
        QTest::newRow("renamed") << RecoveryResult{.id = {}, .path = u"/d/a-1.zip"_s, .otherPlace = true}
                                 << u"a.zip is back in /d as a-1.zip."_s << u"a.zip è di nuovo in /d come a-1.zip."_s;
        QTest::newRow("gone") << RecoveryResult{.id = {}, .copyGone = true} << u"a.zip is no longer in Recovery."_s
                              << u"a.zip non è più in Recupero."_s;
        QTest::newRow("read-only") << failedWith(EROFS) << u"a.zip stays in Recovery: /d cannot be written to."_s
                                   << u"a.zip resta in Recupero: non si può scrivere in /d."_s;
        QTest::newRow("full") << failedWith(ENOSPC) << u"a.zip stays in Recovery: there is not enough room in /d."_s
                              << u"a.zip resta in Recupero: non c’è abbastanza spazio in /d."_s;
        QTest::newRow("in the way") << failedWith(ENOTDIR) << u"a.zip stays in Recovery: a file is in the way of /d."_s
                                    << u"a.zip resta in Recupero: un file occupa il posto di /d."_s;
        QTest::newRow("stopped") << failedWith(ECANCELED) << QString() << QString();
        QTest::newRow("asked for twice") << failedWith(EBUSY) << QString() << QString();
    }

    void eachResultIsOneSentence()
    {
        QFETCH(RecoveryResult, result);
        QFETCH(const QString, english);
        QFETCH(const QString, italian);
        const LapsaRecoveryItem record = recordOf(u"/d/a.zip"_s);
        result.id = record.id;

        qputenv("LC_ALL", "C.UTF-8");
        QCOMPARE(recoveryMessages::putBack({record}, {result}).text, english);
        qputenv("LC_ALL", "it_IT.UTF-8");
        QCOMPARE(recoveryMessages::putBack({record}, {result}).text, italian);
    }

    void severalAreCounted()
    {
        const LapsaRecoveryItem one = recordOf(u"/d/a"_s);
        const LapsaRecoveryItem two = recordOf(u"/e/b"_s);
        const RecoveryResult back{.id = one.id, .path = u"/d/a"_s};
        const RecoveryResult renamed{.id = two.id, .path = u"/e/b-1"_s, .otherPlace = true};
        const RecoveryResult full{.id = two.id, .error = FileError::fromErrno(ENOSPC)};

        QCOMPARE(recoveryMessages::putBack({one, two}, {back, renamed}).text,
                 u"2 files are back, one of them under another name."_s);
        const auto failure = recoveryMessages::putBack({one, two}, {back, full});
        QVERIFY(failure.failed);
        QCOMPARE(failure.text, u"b stays in Recovery: there is not enough room in /e."_s);
    }

    void theTimeThatIsLeftIsRoundedUp()
    {
        const LapsaRecoveryItem record = recordOf(u"/d/a"_s);

        QCOMPARE(recoveryTexts::remainingText(record, false, now + 3min + 59s), u"removed in 23h 57min"_s);
        QCOMPARE(recoveryTexts::remainingText(record, false, now + 24h - 1s), u"removed in 1min"_s);
        QCOMPARE(recoveryTexts::remainingText(record, false, now + 24h), u"removed soon"_s);
        QCOMPARE(recoveryTexts::remainingText(record, true, now), u"kept until you take it"_s);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::RecoveryMessages_test)
#include "RecoveryMessages_test.moc"
