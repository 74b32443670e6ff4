// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileCount.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

using fileSystem::CountLimits;
using fileSystem::FileCount;

namespace {

std::optional<FileCount> count(const QString& folder, std::int64_t most = 1000)
{
    return fileSystem::countFiles(folder, {.most = most, .deadline = QDeadlineTimer(QDeadlineTimer::Forever)});
}

} // namespace

class FileCount_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void everythingThatIsNoFolderCounts()
    {
        for (const QString& file : {u"a"_s, u".hidden"_s, u"one/b"_s, u"one/deep/c"_s, u"two/d"_s, u".git/e"_s}) {
            m_home->makeFile(u"folder/"_s + file);
        }
        m_home->makeFolder(u"folder/empty"_s);
        m_home->makeFile(u"beside"_s);
        QVERIFY(QFile::link(m_home->path(u"folder/one"_s), m_home->path(u"folder/two/link"_s)));
        QVERIFY(QFile::link(u"nowhere"_s, m_home->path(u"folder/dangling"_s)));

        QCOMPARE(count(m_home->path(u"folder"_s)), std::optional(FileCount{.files = 8, .whole = true}));
    }

    void anEmptyFolderHoldsNone()
    {
        QCOMPARE(count(m_home->makeFolder(u"folder"_s)), std::optional(FileCount{.files = 0, .whole = true}));
    }

    void whatIsNoFolderItselfHasNoCount()
    {
        QVERIFY(QFile::link(m_home->makeFolder(u"folder"_s), m_home->path(u"link"_s)));

        QCOMPARE(count(m_home->path(u"link"_s)), std::nullopt);
        QCOMPARE(count(m_home->makeFile(u"file"_s)), std::nullopt);
        QCOMPARE(count(m_home->path(u"missing"_s)), std::nullopt);
        QCOMPARE(count(u"relative"_s), std::nullopt);
    }

    void theCountEndsWithOneFileMoreThanTheMost()
    {
        for (int number = 0; number < 5; ++number) {
            m_home->makeFile(u"folder/%1/file"_s.arg(number));
        }

        QCOMPARE(count(m_home->path(u"folder"_s), 5), std::optional(FileCount{.files = 5, .whole = true}));
        QCOMPARE(count(m_home->path(u"folder"_s), 4)->whole, false);
        for (int number = 0; number < 5; ++number) {
            m_home->makeFile(u"flat/"_s + QString::number(number));
        }
        QCOMPARE(count(m_home->path(u"flat"_s), 4), std::optional(FileCount{.files = 5, .whole = false}));
    }

    void theCountEndsWithOneFolderMoreThanTheMost()
    {
        for (int number = 0; number < 5; ++number) {
            m_home->makeFolder(u"folder/"_s + QString::number(number));
        }

        QCOMPARE(count(m_home->path(u"folder"_s), 5), std::optional(FileCount{.files = 0, .whole = true}));
        QCOMPARE(count(m_home->path(u"folder"_s), 4), std::optional(FileCount{.files = 0, .whole = false}));
    }

    void theCountEndsAtItsDeadline()
    {
        m_home->makeFile(u"folder/file"_s);

        QCOMPARE(fileSystem::countFiles(m_home->path(u"folder"_s), {.most = 1000, .deadline = QDeadlineTimer(0)}),
                 std::optional(FileCount{.files = 0, .whole = false}));
    }

    void theCountEndsWhenItIsToldTo()
    {
        m_home->makeFile(u"folder/a"_s);
        m_home->makeFile(u"folder/b"_s);
        m_home->makeFile(u"folder/c"_s);
        int entries = 0;
        const std::optional<FileCount> counted =
            fileSystem::countFiles(m_home->path(u"folder"_s), {.most = 1000,
                                                               .deadline = QDeadlineTimer(QDeadlineTimer::Forever),
                                                               .goesOn = [&entries] { return ++entries < 3; }});

        QCOMPARE(counted, std::optional(FileCount{.files = 2, .whole = false}));
    }

    void aFolderFarDownIsCounted()
    {
        constexpr int depth = 300;
        QDir folder(m_home->makeFolder(u"folder"_s));
        QString below = u"folder"_s;
        for (int level = 0; level < depth; ++level) {
            below += u"/"_s + QString(8, u'x');
        }
        m_home->makeFile(below + u"/file"_s);

        QCOMPARE(count(folder.path()), std::optional(FileCount{.files = 1, .whole = true}));
    }

    void aSubfolderThatCannotBeListedMakesItNoWholeCount()
    {
        if (!PrivateMounts::available()) {
            QSKIP("becomes another user, which needs root");
        }
        const QString shut = m_home->makeFolder(u"folder/shut"_s);
        m_home->makeFile(u"folder/shut/unseen"_s);
        m_home->makeFile(u"folder/seen"_s);
        QVERIFY(QFile::setPermissions(m_home->path({}), QFile::ReadOwner | QFile::ExeOwner | QFile::ExeOther));
        QVERIFY(QFile::setPermissions(m_home->path(u"folder"_s), QFile::ReadOther | QFile::ExeOther));
        QVERIFY(QFile::setPermissions(shut, QFile::ReadOwner));
        const QString folder = m_home->path(u"folder"_s);

        QCOMPARE(asOrdinaryUser(
                     [&] { return count(folder) == std::optional(FileCount{.files = 1, .whole = false}) ? 0 : 1; }),
                 0);

        QVERIFY(QFile::setPermissions(m_home->path({}), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

private:
    std::unique_ptr<TemporaryHome> m_home;
};

QTEST_GUILESS_MAIN(FileCount_test)

#include "FileCount_test.moc"
