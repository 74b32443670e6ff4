// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CopiedOriginals.h"
#include "CopyProgress.h"
#include "EntryCopy.h"
#include "LateWriter.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <thread>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

namespace {

/// A file that was copied and is about to be removed, and somebody who begins to open it just before that.
class RemovedFile
{
public:
    explicit RemovedFile(const std::function<void(int file)>& write)
    {
        m_path = m_home.makeFile(u"folder/original"_s, "as it was").toUtf8();
        m_home.makeFile(u"folder/copy"_s, "as it was");
        const Result<AtPath> place = openParentOf(QString::fromUtf8(m_path));
        m_folder = place.value().folder;
        m_status = statAt(m_folder.get(), "original", STATX_BASIC_STATS).value();
        m_source.emplace(SourceFile::open({.folder = m_folder.get(), .name = "original", .status = m_status}).value());
        m_writer = std::thread([this, write] {
            const int file = ::open(m_path.constData(), O_WRONLY | O_APPEND);
            m_opened = true;
            write(file);
            ::close(file);
        });
    }

    RemovedFile(const RemovedFile&) = delete;
    RemovedFile& operator=(const RemovedFile&) = delete;

    ~RemovedFile() { m_writer.join(); }

    /// Removes it, once the writer waits.
    void removeAndFollow()
    {
        while (!m_source->wanted()) {
            std::this_thread::yield();
        }
        QVERIFY(!m_opened);
        QCOMPARE(::unlink(m_path.constData()), 0);
        CopyProgress progress([] {}, nullptr);
        followLateWriter(*m_source, ContentStamp::of(m_status), {.folder = m_folder, .name = "copy"}, progress);
    }

    [[nodiscard]] QByteArray copy() const
    {
        QFile file(m_home.path(u"folder/copy"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }

    [[nodiscard]] mode_t modeOfCopy() const
    {
        struct stat status = {};
        return ::stat(m_home.path(u"folder/copy"_s).toUtf8().constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    /// In the folder of both.
    [[nodiscard]] QStringList names() const { return m_home.names(u"folder"_s); }

private:
    TemporaryHome m_home;
    QByteArray m_path;
    SharedDescriptor m_folder;

    struct statx m_status
    {};

    std::optional<SourceFile> m_source;
    std::atomic<bool> m_opened = false;
    std::thread m_writer;
};

/// Whether somebody waits to open the file, which is leased.
bool isWanted(std::uint64_t inode)
{
    QFile locks(u"/proc/locks"_s);
    if (!locks.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray end = ':' + QByteArray::number(qulonglong(inode)) + ' ';
    const QList<QByteArray> lines = locks.readAll().split('\n');
    return std::ranges::any_of(lines,
                               [&](const QByteArray& line) { return line.contains("BREAKING") && line.contains(end); });
}

} // namespace

class LateWriterTest final : public QObject
{
    Q_OBJECT

private slots:

    void whatIsWrittenInTheLastMomentIsInTheCopy()
    {
        RemovedFile file([](int open) { std::ignore = ::write(open, ", and more", 10); });

        file.removeAndFollow();

        QCOMPARE(file.copy(), QByteArray("as it was, and more"));
        QCOMPARE(file.names(), QStringList{u"copy"_s});
    }

    void theCopyStaysIfNothingWasWritten()
    {
        RemovedFile file([](int) {});

        file.removeAndFollow();

        QCOMPARE(file.copy(), QByteArray("as it was"));
        QCOMPARE(file.names(), QStringList{u"copy"_s});
    }

    void theAttributesAreThoseOfNow()
    {
        RemovedFile file([](int open) {
            std::ignore = ::ftruncate(open, 2);
            ::fchmod(open, 0641);
        });

        file.removeAndFollow();

        QCOMPARE(file.copy(), QByteArray("as"));
        QCOMPARE(file.modeOfCopy(), mode_t{0641});
    }

    void insideAFolderToo()
    {
        const TemporaryHome home;
        const QByteArray path = home.makeFile(u"from/sub/file"_s, "as it was").toUtf8();
        home.makeFile(u"to/sub/file"_s, "as it was");
        const AtPath from = openParentOf(home.path(u"from"_s)).value();
        const AtPath folder = openParentOf(QString::fromUtf8(path)).value();
        const struct statx status = statAt(folder.folder.get(), "file", STATX_BASIC_STATS).value();
        CopyProgress progress([] {}, nullptr);
        std::optional<CopiedOriginals> originals;
        originals.emplace(CopiedFiles{{identityOf(status), ContentStamp::of(status)}},
                          CopiedOriginals::Folders{.from = from, .to = {.folder = from.folder, .name = "to"}},
                          progress);
        QVERIFY(originals->mayGo(folder.folder.get(), "file"));
        std::thread writer([&] {
            const int file = ::open(path.constData(), O_WRONLY | O_APPEND);
            std::ignore = ::write(file, ", and more", 10);
            ::close(file);
        });
        while (!isWanted(status.stx_ino)) {
            std::this_thread::yield();
        }
        ::unlink(path.constData());

        originals.reset();

        writer.join();
        QFile copy(home.path(u"to/sub/file"_s));
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QCOMPARE(copy.readAll(), QByteArray("as it was, and more"));
    }
};

QTEST_GUILESS_MAIN(LateWriterTest)
#include "LateWriter_test.moc"
