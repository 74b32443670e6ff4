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

#include <cerrno>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

        writer.write(path, "bytes", none);
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
        writer.write(list, "old", none);
        writer.write(other, "other", none);
        writer.write(list, "new", none);

        lanes.runNext();
        QCOMPARE(contentOf(other), QByteArray("other"));
        QVERIFY(!QFile::exists(list));

        lanes.runNext();
        QCOMPARE(contentOf(list), QByteArray("new"));
        QVERIFY(lanes.isIdle());
    }

    void aFolderThatIsMissingIsMadeForTheUserAlone()
    {
        TemporaryHome home;
        ManualLanes lanes(ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);

        writer.write(home.path(u"folder/list"_s), "bytes", none);

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
        writer.write(home.path(u"list"_s), "bytes", none);
        writer.write(home.path(u"file/list"_s), "bytes", [&](const FileError& error) { code = error.code; });

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
        writer.write(home.path(u"file/list"_s), "bytes", [&](const FileError& error) { code = error.code; });
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
            writer.write(home.path(u"list"_s), QByteArray::number(i), none);
            writer.write(home.path(QString::number(i)), "bytes", none);
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
