// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileWriter.h"
#include "ManualLanes.h"
#include "QtMainQueue.h"
#include "TemporaryHome.h"
#include "ThreadLanes.h"

#include <QFile>
#include <QStringList>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

FileWriter::Content content(const QByteArray& bytes)
{
    return [bytes] { return bytes; };
}

void none(const FileError&) {}

} // namespace

class FileWriterTest final : public QObject
{
    Q_OBJECT

private slots:

    void nothingIsWrittenOnTheMainThread()
    {
        TemporaryHome home;
        ManualLanes lanes;
        FileWriter writer(lanes);
        const QString path = home.path(u"list"_s);

        writer.write(path, content("bytes"), none);
        QVERIFY(!QFile::exists(path));

        lanes.runAll();
        QCOMPARE(contentOf(path), QByteArray("bytes"));
    }

    void aNewerSaveTakesThePlaceOfOneThatWaits()
    {
        TemporaryHome home;
        ManualLanes lanes;
        FileWriter writer(lanes);
        const QString list = home.path(u"list"_s);
        const QString other = home.path(u"other"_s);
        writer.write(list, content("old"), none);
        writer.write(other, content("other"), none);
        writer.write(list, content("new"), none);

        lanes.runNext();
        QCOMPARE(contentOf(other), QByteArray("other"));
        QVERIFY(!QFile::exists(list));

        lanes.runNext();
        QCOMPARE(contentOf(list), QByteArray("new"));
        QVERIFY(lanes.isIdle());
    }

    void itKnowsWhatStillWaits()
    {
        TemporaryHome home;
        ManualLanes lanes;
        FileWriter writer(lanes);
        const QString list = home.path(u"list"_s);
        QVERIFY(!writer.isWaiting(list));

        writer.write(list, content("old"), none);
        QVERIFY(writer.isWaiting(list));
        QVERIFY(!writer.isWaiting(home.path(u"other"_s)));

        lanes.runAll();
        QVERIFY(!writer.isWaiting(list));
    }

    void theBytesAreMadeWhenTheirTurnComes()
    {
        TemporaryHome home;
        ManualLanes lanes;
        FileWriter writer(lanes);
        QStringList made;
        const auto noting = [&made](const QString& name) {
            return [&made, name] {
                made << name;
                return name.toUtf8();
            };
        };
        writer.write(home.path(u"list"_s), noting(u"old"_s), none);
        writer.write(home.path(u"list"_s), noting(u"new"_s), none);
        QCOMPARE(made, QStringList());

        lanes.runAll();
        QCOMPARE(made, QStringList{u"new"_s});
        QCOMPARE(contentOf(home.path(u"list"_s)), QByteArray("new"));
    }

    void theBytesAreMadeOnALaneAndForgottenThere()
    {
        TemporaryHome home;
        QtMainQueue queue;
        ThreadLanes lanes(queue);
        FileWriter writer(lanes);
        std::vector<std::thread::id> made;
        std::atomic<int> forgottenHere = 0;
        const auto noting = [&] {
            // What a list takes to be freed is as much as what it takes to be written.
            const std::shared_ptr<int> list(new int(0), [&, main = std::this_thread::get_id()](const int* number) {
                forgottenHere += std::this_thread::get_id() == main ? 1 : 0;
                delete number;
            });
            return [&, list] {
                made.push_back(std::this_thread::get_id());
                return QByteArray("bytes");
            };
        };
        for (int i = 0; i < 50; ++i) {
            writer.write(home.path(u"list"_s), noting(), none);
        }

        QVERIFY(writer.flush(60s));

        QVERIFY(!made.empty());
        QVERIFY(std::ranges::none_of(made, [](auto thread) { return thread == std::this_thread::get_id(); }));
        QCOMPARE(forgottenHere.load(), 0);
    }

    void aFolderThatIsMissingIsMadeForTheUserAlone()
    {
        TemporaryHome home;
        ManualLanes lanes(ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);

        writer.write(home.path(u"folder/list"_s), content("bytes"), none);

        QCOMPARE(contentOf(home.path(u"folder/list"_s)), QByteArray("bytes"));
        QCOMPARE(QFile::permissions(home.path(u"folder"_s)) & QFile::Permissions(0x0077), QFile::Permissions());
    }

    void flushingWaitsForAllThatWasHandedOver()
    {
        TemporaryHome home;
        QtMainQueue queue;
        ThreadLanes lanes(queue);
        FileWriter writer(lanes);
        std::optional<int> code;
        home.makeFile(u"file"_s);
        writer.write(home.path(u"list"_s), content("bytes"), none);
        writer.write(home.path(u"file/list"_s), content("bytes"), [&](const FileError& error) { code = error.code; });

        QVERIFY(writer.flush(60s));

        QCOMPARE(contentOf(home.path(u"list"_s)), QByteArray("bytes"));
        QCOMPARE(code.value_or(0), ENOTDIR);
        QVERIFY(writer.flush(60s));
    }

    void aFailureIsTold()
    {
        TemporaryHome home;
        ManualLanes lanes;
        FileWriter writer(lanes);
        std::optional<int> code;

        home.makeFile(u"file"_s);
        writer.write(home.path(u"file/list"_s), content("bytes"), [&](const FileError& error) { code = error.code; });
        QVERIFY(!code);
        lanes.runAll();

        QCOMPARE(code.value_or(0), ENOTDIR);
    }

    void whatWasHandedOverIsWrittenBeforeTheEnd()
    {
        TemporaryHome home;
        QtMainQueue queue;
        ThreadLanes lanes(queue);
        FileWriter writer(lanes);
        for (int i = 0; i < 50; ++i) {
            writer.write(home.path(u"list"_s), content(QByteArray::number(i)), none);
            writer.write(home.path(QString::number(i)), content("bytes"), none);
        }

        QVERIFY(lanes.finish(60s));

        QCOMPARE(contentOf(home.path(u"list"_s)), QByteArray("49"));
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(contentOf(home.path(QString::number(i))), QByteArray("bytes"));
        }
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FileWriterTest)
#include "FileWriter_test.moc"
