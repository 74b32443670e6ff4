// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddMessage.h"

#include "AddResult.h"
#include "FileName.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "Localized.h"

#include <QDeadlineTimer>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace lapsa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The message waits for the count. Beyond these limits it would come noticeably late, and a larger number is no more
/// useful.
constexpr std::int64_t mostCounted = 5000;
constexpr auto patience = 100ms;
/// "More than" is not used for smaller numbers.
constexpr std::int64_t leastRounded = 10;

/// The room for a sentence: the panel shows two lines of about sixty characters.
enum class Room
{
    /// Both lines.
    Alone,
    /// One line, beside the sentence about the new folders or about what was refused.
    Shared,
};

constexpr qsizetype longestName(Room room)
{
    return room == Room::Alone ? 32 : 16;
}

bool isWrittenFromRightToLeft(QChar letter)
{
    return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
}

/// The last component in quotation marks; a long name loses its middle. Line breaks are removed, because they would use
/// up the sentence's lines.
QString quotedName(const QString& path, Room room)
{
    QString name = lastPathComponent(path).simplified();
    if (const qsizetype longest = longestName(room); name.size() > longest) {
        const qsizetype end = longest / 3;
        name = name.first(longest - end).trimmed() + u'…' + name.last(end).trimmed();
    }
    // Isolated, otherwise the words after the name would be drawn before it.
    return std::ranges::any_of(name, isWrittenFromRightToLeft) ? u"“\u2068%1\u2069”"_s.arg(name) : u"“%1”"_s.arg(name);
}

/// The only refused path, with the reason; in English `cannot be put on countdown` follows.
QString refusedWithReason(const AddResult::Refused& refused)
{
    using enum fileSystem::Refusal;
    const QString name = quotedName(refused.path, Room::Alone);
    switch (refused.reason) {
    case Root:
        return Localized::text(u"The root of the file system"_s, u"la radice del file system"_s);
    case Home:
        return Localized::text(u"Your home folder"_s, u"la cartella home"_s);
    case ProtectedFolder:
        return Localized::text(u"Lapsa’s own folder"_s, u"la cartella di Lapsa"_s);
    case MountPoint:
        return Localized::text(u"%1 is a mounted disk and"_s, u"%1: è un disco montato"_s).arg(name);
    case HoldsHome:
        return Localized::text(u"%1 holds your home folder and"_s, u"%1: contiene la cartella home"_s).arg(name);
    case HoldsProtectedFolder:
        return Localized::text(u"%1 holds Lapsa’s own folder and"_s, u"%1: contiene la cartella di Lapsa"_s).arg(name);
    case HoldsMountPoint:
        return Localized::text(u"%1 holds a mounted disk and"_s, u"%1: contiene un disco montato"_s).arg(name);
    }
    return name;
}

bool needsNoName(fileSystem::Refusal reason)
{
    using enum fileSystem::Refusal;
    return reason == Root || reason == Home || reason == ProtectedFolder;
}

/// The refused paths, as far as there is room: the reason for a single one, the names of several.
QString refusedThings(const QList<AddResult::Refused>& refused, Room room)
{
    const AddResult::Refused& first = refused.first();
    if (refused.size() == 1) {
        return room == Room::Alone || needsNoName(first.reason) ? refusedWithReason(first)
                                                                : quotedName(first.path, room);
    }
    if (room == Room::Shared) {
        return Localized::text(u"%1 items"_s, u"%1 elementi"_s).arg(Localized::number(refused.size()));
    }
    const QString name = quotedName(first.path, room);
    if (refused.size() == 2) {
        return Localized::text(u"%1 and %2"_s, u"%1 e %2"_s).arg(name, quotedName(refused.last().path, room));
    }
    return Localized::text(u"%1 and %2 others"_s, u"%1 e altri %2 elementi"_s)
        .arg(name, Localized::number(refused.size() - 1));
}

QString refusalSentence(const QList<AddResult::Refused>& refused, Room room)
{
    return Localized::text(u"%1 cannot be put on countdown."_s, u"Impossibile avviare un conto alla rovescia per %1."_s)
        .arg(refusedThings(refused, room));
}

/// Rounds down to two significant digits, for a lower bound.
std::int64_t roundedDown(std::int64_t number)
{
    std::int64_t unit = 1;
    while (number / unit >= 100) {
        unit *= 10;
    }
    return number / unit * unit;
}

/// The number of files in folders, after "goes as a whole".
QString contentText(const fileSystem::FileCount& count, bool several)
{
    const std::int64_t least = roundedDown(count.files - 1);
    if (!count.whole && least < leastRounded) {
        return several ? Localized::text(u", with everything in them."_s, u", con tutto il loro contenuto."_s)
                       : Localized::text(u", with everything in it."_s, u", con tutto il suo contenuto."_s);
    }
    if (!count.whole) {
        return Localized::text(u": more than %1 files."_s, u": più di %1 file."_s).arg(Localized::number(least));
    }
    if (count.files == 0) {
        return Localized::text(u": no files yet."_s, u": per ora nessun file."_s);
    }
    return count.files == 1 ? Localized::text(u": 1 file."_s, u": 1 file."_s)
                            : Localized::text(u": %1 files."_s, u": %1 file."_s).arg(Localized::number(count.files));
}

/// The folders that go as a whole, and how many files they hold.
struct WholeFolders
{
    QStringList paths;
    fileSystem::FileCount content;
};

WholeFolders counted(const QStringList& folders, const fileSystem::CountLimits& limits)
{
    WholeFolders whole;
    fileSystem::FileCount& sum = whole.content;
    for (const QString& folder : folders) {
        // A link to a folder goes alone, without its target.
        if (const auto count =
                fileSystem::countFiles(folder, {.most = limits.most - sum.files, .deadline = limits.deadline})) {
            sum = {.files = sum.files + count->files, .whole = sum.whole && count->whole};
            whole.paths += folder;
        }
    }
    return whole;
}

QString folderSentence(const WholeFolders& folders, Room room)
{
    const bool several = folders.paths.size() > 1;
    const QString start =
        several ? Localized::text(u"%1 folders go as a whole"_s, u"%1 cartelle verranno eliminate per intero"_s)
                      .arg(Localized::number(folders.paths.size()))
                : Localized::text(u"%1 goes as a whole"_s, u"%1 verrà eliminata per intero"_s)
                      .arg(quotedName(folders.paths.first(), room));
    return start + contentText(folders.content, several);
}

} // namespace

std::optional<QString> addMessage(const AddResult& result, const fileSystem::CountLimits& limits)
{
    const WholeFolders folders = counted(result.newFolders, limits);
    const bool both = !result.refused.isEmpty() && !folders.paths.isEmpty();
    const Room room = both ? Room::Shared : Room::Alone;
    QStringList sentences;
    if (!result.refused.isEmpty()) {
        sentences += refusalSentence(result.refused, room);
    }
    if (!folders.paths.isEmpty()) {
        sentences += folderSentence(folders, room);
    }
    return sentences.isEmpty() ? std::nullopt : std::optional(sentences.join(u' '));
}

void showAddMessage(LapsaStore& store, const AddResult& result)
{
    const auto limits = [] {
        return fileSystem::CountLimits{.most = mostCounted, .deadline = QDeadlineTimer(patience)};
    };
    const auto show = [store = QPointer(&store)](const std::optional<QString>& message) {
        if (store && message) {
            store->setLastMessage(message);
        }
    };
    if (result.newFolders.isEmpty()) {
        show(addMessage(result, limits()));
        return;
    }
    store.lanes().look(result.newFolders.constFirst(), [result, limits, show](LaneJob&) -> Lanes::Report {
        return [show, message = addMessage(result, limits())] { show(message); };
    });
}

} // namespace lapsa
