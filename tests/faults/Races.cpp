// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Races.h"

#include "FaultProgram.h"
#include "FaultWorld.h"
#include "FileTree.h"
#include "Inventory.h"
#include "UserFiles.h"
#include "VersionLog.h"

#include <QDir>

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace lapsa::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The settings of a race, as far as files are disposed of by them.
enum class Way
{
    Recovery,
    Trash,
    ForGood,
};

struct Race
{
    const char* name;
    Way way;
    bool onVolume;
    /// What is put on countdown.
    QString item;
    /// Makes the item and what is swapped for it.
    std::function<void(const QString& documents)> prepare;
    /// What the other side does, over and over again; the number grows.
    std::function<void(const FaultWorld& world, const QByteArray& documents, int number)> disturb;
    /// Whether everything that was there before is there afterwards.
    bool keepsAll = true;
};

void swap(const QByteArray& one, const QByteArray& other)
{
    ::renameat2(AT_FDCWD, one.constData(), AT_FDCWD, other.constData(), RENAME_EXCHANGE);
}

void makeCanary(const FaultWorld& world)
{
    makeUserFile(world.home() + u"/Canary/readme.txt"_s);
    makeUserFile(world.home() + u"/Canary/deep/note.txt"_s);
}

QByteArray canaryOf(const QString& documents)
{
    // Both sides of the world lie beside each other.
    return QFileInfo(documents).path().toUtf8() + "/../home/Canary";
}

void fileAndLink(const QString& documents)
{
    makeUserFile(documents + u"/x"_s, 20'000);
    ::symlink((canaryOf(documents) + "/readme.txt").constData(), (documents + u"/y"_s).toUtf8().constData());
}

void folderAndLink(const QString& documents)
{
    makeUserFolder(documents + u"/Project"_s);
    ::symlink(canaryOf(documents).constData(), (documents + u"/Project/other"_s).toUtf8().constData());
}

void swapFile(const FaultWorld&, const QByteArray& documents, int)
{
    swap(documents + "/x", documents + "/y");
}

void swapSubfolder(const FaultWorld&, const QByteArray& documents, int)
{
    swap(documents + "/Project/sub", documents + "/Project/other");
}

/// What the other side has seen, in memory that it shares with the one who looks afterwards.
volatile bool& overwritten()
{
    static void* const memory =
        ::mmap(nullptr, sizeof(bool), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return *static_cast<bool*>(memory);
}

/// Takes a name for a moment, where it is free, and sees to it that nobody takes it away meanwhile.
void plant(const QByteArray& path)
{
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0) {
        return;
    }
    struct stat status = {};
    ::sched_yield();
    if (::fstat(file, &status) == 0 && status.st_nlink == 0) {
        overwritten() = true;
    } else {
        ::unlink(path.constData());
    }
    ::close(file);
}

void plantInRecovery(const FaultWorld& world, const QByteArray&, int number)
{
    plant(world.dataFolder().toUtf8() + (number % 2 == 0 ? "/Recovery/x" : "/Recovery/x-1"));
}

void plantInTrash(const FaultWorld& world, const QByteArray&, int number)
{
    plant(world.home().toUtf8() + "/.local/share/Trash/files" + (number % 2 == 0 ? "/x" : "/x.2"));
}

void plantTemporary(const FaultWorld& world, const QByteArray& documents, int)
{
    const QByteArray canary = canaryOf(QString::fromUtf8(documents)) + "/readme.txt";
    ::symlink(canary.constData(), (world.dataFolder().toUtf8() + "/.state.json.0123456789abcdef.tmp").constData());
    ::symlink(canary.constData(), (world.dataFolder().toUtf8() + "/.recovery.json.0123456789abcdef.tmp").constData());
}

std::vector<Race> races()
{
    const auto file = [](const QString& documents) { makeUserFile(documents + u"/x"_s, 20'000); };
    std::vector<Race> all;
    for (const Way way : {Way::Recovery, Way::Trash, Way::ForGood}) {
        for (const bool onVolume : {false, true}) {
            const bool keepsAll = way != Way::ForGood;
            // A file that is copied to another volume goes by a last look and a removal, two calls: what takes its name
            // in between goes in its place, as with every program that copies and removes.
            const bool copied = way == Way::Recovery && onVolume;
            all.push_back(
                {"a link in the place of a file", way, onVolume, u"x"_s, fileAndLink, swapFile, keepsAll && !copied});
            all.push_back({"a link in the place of a folder", way, onVolume, u"Project"_s, folderAndLink, swapSubfolder,
                           keepsAll});
        }
    }
    for (const bool onVolume : {false, true}) {
        all.push_back({"names taken in Recovery", Way::Recovery, onVolume, u"x"_s, file, plantInRecovery});
        all.push_back({"links in the place of temporary files", Way::Recovery, onVolume, u"x"_s, file, plantTemporary});
    }
    all.push_back({"names taken in the Trash", Way::Trash, false, u"x"_s, file, plantInTrash});
    return all;
}

/// The other side, until it goes.
class Disturber final
{
public:
    explicit Disturber(const std::function<void(int)>& disturb)
        : m_process(::fork())
    {
        if (m_process == 0) {
            for (int number = 0;; ++number) {
                disturb(number);
            }
        }
    }

    Disturber(const Disturber&) = delete;
    Disturber& operator=(const Disturber&) = delete;

    ~Disturber()
    {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }

private:
    pid_t m_process;
};

int dispose(const Race& race, const QString& documents)
{
    FaultProgram program;
    program.load();
    program.changeSettings([&](LapsaSettings& settings) {
        settings.useRecoveryWindow = race.way == Way::Recovery;
        settings.useTrash = race.way != Way::ForGood;
    });
    program.add({documents + u'/' + race.item});
    program.letTimePass(1min);
    program.pass();
    program.quit();
    return EXIT_SUCCESS;
}

std::vector<QByteArray> keysIn(const FaultWorld& world)
{
    std::vector<QByteArray> keys;
    for (const QByteArray& folder : {world.home().toUtf8(), world.volume().toUtf8()}) {
        for (const FileFound& file : filesBelow(folder)) {
            if (!file.path.contains(".json") && !file.path.endsWith(".trashinfo")) {
                keys.push_back(file.key);
            }
        }
    }
    std::ranges::sort(keys);
    return keys;
}

class Round final
{
public:
    Round(const FaultWorld& world, const Race& race)
        : m_world(world)
        , m_race(race)
        , m_documents((race.onVolume ? world.volume() : world.home()) + u"/Documents"_s)
    {
        m_world.clear();
        overwritten() = false;
        VersionLog::shared().clear();
        makeCanary(m_world);
        m_race.prepare(m_documents);
        m_canary = treeAt(m_world.home() + u"/Canary"_s);
        m_before = keysIn(m_world);
    }

    /// What is broken afterwards.
    [[nodiscard]] QByteArray run()
    {
        RunEnd end;
        {
            const Disturber disturber([this](int number) { m_race.disturb(m_world, m_documents.toUtf8(), number); });
            end = runApart([this] { return dispose(m_race, m_documents); });
        }
        if (end.how != RunEnd::How::Finished || end.code != EXIT_SUCCESS) {
            return "the pass did not come to its end";
        }
        if (treeAt(m_world.home() + u"/Canary"_s) != m_canary) {
            return "the canary was touched";
        }
        const std::vector<QByteArray> after = keysIn(m_world);
        if (m_race.keepsAll && !std::ranges::includes(after, m_before)) {
            return "something is lost";
        }
        return overwritten() ? "somebody's file was overwritten" : QByteArray();
    }

private:
    const FaultWorld& m_world;
    const Race& m_race;
    QString m_documents;
    QList<QByteArray> m_canary;
    std::vector<QByteArray> m_before;
};

} // namespace

Figures runRaces(const FaultWorld& world, int rounds)
{
    Figures figures;
    for (const Race& race : races()) {
        for (int i = 0; i < rounds; ++i) {
            ++figures.faults;
            const QByteArray broken = Round(world, race).run();
            if (!broken.isEmpty()) {
                ++figures.failed;
                std::printf("BROKEN  tools/faults --scenario races   (%s%s: %s)\n", race.name,
                            race.onVolume ? ", on another volume" : "", broken.constData());
                std::fflush(stdout);
            }
        }
    }
    return figures;
}

} // namespace lapsa::test
