// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ComingsAndGoings.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace lapsa::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype itemsAtOnce = 1000;
constexpr int lockedAtOnce = 20;
constexpr int folders = 40;
constexpr std::chrono::minutes betweenVisits{30};
constexpr int visitsADay = 48;
constexpr int visitsAnHour = 2;
constexpr std::int64_t retentionHours = 4;
constexpr std::chrono::seconds passInterval{60};

// Hours of the day in which the user wants something else.
constexpr int hourOfThePause = 3;
constexpr int hourOfTheTrash = 5;
constexpr int hourWithoutReturn = 7;

const QString watchedFolder = u"watched"_s;
const QString trashFolder = u".local/share/Trash"_s;
// Few names, so that Recovery and Trash have to find others.
const std::array fileNames{u"report.txt"_s, u"Notes"_s, u"archive.tar.gz"_s, u"perch\u00E9.pdf"_s, u"a b.zip"_s};

} // namespace

ComingsAndGoings::ComingsAndGoings()
{
    m_world.changeSettings([this](LapsaSettings& settings) {
        settings.recoveryRetentionHours = retentionHours;
        settings.autoCleanFolders.push_back({.folderPath = m_world.home.makeFolder(watchedFolder),
                                             .lifespanMinutes = 240,
                                             .includeExistingFiles = true,
                                             .applyFileTypeRules = false});
    });
    m_service.emplace(m_world.store(), m_warnings,
                      CleanupService::Environment{.clock = m_world.time, .mainQueue = m_world.time});
    m_service->start();
}

void ComingsAndGoings::liveOneDay()
{
    for (int i = 0; i < visitsADay; ++i) {
        visit(i);
        liveUntilTheNextVisit();
    }
    m_world.letSavesPass();
    m_savingTime = 1s;
    compareWithDisk();
    compareWithSavedLists();
    // The recorders keep what they were told for whoever asks; here nobody does.
    m_warnings.sent = {};
    m_warnings.joint = {};
    m_world.appearance.forced = {};
}

void ComingsAndGoings::emptyTrash()
{
    for (const QString& folder : {trashFolder + u"/files"_s, trashFolder + u"/info"_s}) {
        for (const QString& name : m_world.home.names(folder)) {
            require(QFile::remove(m_world.home.path(folder + u'/' + name)), u"the Trash can be emptied"_s);
        }
    }
    m_trashed.clear();
}

void ComingsAndGoings::visit(int visitOfTheDay)
{
    if (visitOfTheDay % visitsAnHour == 0) {
        changeSettings(visitOfTheDay / visitsAnHour);
    }
    putOnCountdownAgain();
    refill();
    touchItems();
    touchRecords();
}

void ComingsAndGoings::changeSettings(int hour)
{
    LapsaSettings settings = m_world.store().settings();
    settings.pauseAllCountdowns = hour == hourOfThePause;
    settings.useRecoveryWindow = hour != hourOfTheTrash && hour != hourWithoutReturn;
    settings.useTrash = hour != hourWithoutReturn;
    m_world.store().setSettings(settings);
}

void ComingsAndGoings::refill()
{
    constexpr int longestLifespan = 48;
    constexpr int step = 30;
    while (m_world.store().items().size() < itemsAtOnce) {
        const QString file = newFile(u"folder-%1"_s.arg(random(folders)));
        m_world.store().addFiles({QUrl::fromLocalFile(file)}, {.fixedLifespan = step * (1 + random(longestLifespan))});
    }
    if (random(2) == 0) {
        // For the next pass to find.
        std::ignore = newFile(watchedFolder);
    }
}

void ComingsAndGoings::touchItems()
{
    LapsaStore& store = m_world.store();
    const QList<LapsaItem> items = store.items();
    const auto locked = std::ranges::find(items, true, &LapsaItem::locked);
    if (std::ranges::count(items, true, &LapsaItem::locked) > lockedAtOnce) {
        store.toggleLock(*locked);
    }
    store.lockItem(anyItem().id);
    store.updateExpiration(anyItem(), 1 + random(1000));

    const LapsaItem left = anyItem();
    store.removeFromList(left);
    m_ordinary += left.path;

    // A file that is removed behind Lapsa's back: its item goes without a word when its time comes.
    const LapsaItem vanished = anyItem();
    if (m_places.remove(vanished.path) > 0) {
        require(QFile::remove(vanished.path), u"a file on countdown lies where its item says"_s);
        m_ordinary.removeAll(vanished.path);
    }

    const LapsaItem disposed = anyItem();
    const QList<LapsaRecoveryItem> before = store.recoveryItems();
    store.deleteNow(disposed);
    followRecords(before);
    followDisposal(disposed);
}

void ComingsAndGoings::touchRecords()
{
    if (m_world.store().recoveryItems().isEmpty()) {
        return;
    }
    const QList<LapsaRecoveryItem>& records = m_world.store().recoveryItems();
    const LapsaRecoveryItem unwanted = records.at(random(int(records.size())));
    m_world.store().deleteRecoveryItem(unwanted);
    m_places.remove(unwanted.recoveryPath);
    if (!records.isEmpty()) {
        restoreOne();
    }
}

void ComingsAndGoings::putOnCountdownAgain()
{
    for (const QString& file : std::exchange(m_ordinary, {})) {
        m_world.store().addFiles({QUrl::fromLocalFile(file)}, {.fixedLifespan = 60});
    }
}

void ComingsAndGoings::restoreOne()
{
    const QList<LapsaRecoveryItem>& records = m_world.store().recoveryItems();
    const LapsaRecoveryItem record = records.at(random(int(records.size())));
    m_world.store().restoreRecoveryItem(record);
    const Serial serial = m_places.take(record.recoveryPath);

    // Whatever its free name was: it is the one file of its folder that was not there before.
    const QDir folder = QFileInfo(record.originalPath).dir();
    for (const QString& name : folder.entryList(QDir::Files)) {
        const QString path = folder.filePath(name);
        if (!m_places.contains(path)) {
            require(serialIn(path) == serial, u"what comes back is the file itself"_s);
            m_places[path] = serial;
            m_ordinary += path;
            return;
        }
    }
    require(false, u"a restored copy is back in its folder"_s);
}

QString ComingsAndGoings::newFile(const QString& folder)
{
    ++m_serial;
    QString relative = folder + u'/' + fileNames[std::size_t(random(int(fileNames.size())))];
    if (m_places.contains(m_world.home.path(relative))) {
        relative = folder + u"/%1.txt"_s.arg(m_serial);
    }
    const QString path = m_world.home.makeFile(relative, QByteArray::number(m_serial));
    m_places[path] = m_serial;
    return path;
}

void ComingsAndGoings::liveUntilTheNextVisit()
{
    const QList<LapsaItem> items = m_world.store().items();
    const QList<LapsaRecoveryItem> records = m_world.store().recoveryItems();
    m_world.time.advance(betweenVisits - std::exchange(m_savingTime, 0s));
    followRecords(records);
    followItems(items);
}

void ComingsAndGoings::followItems(const QList<LapsaItem>& before)
{
    const TimePoint now = m_world.time.now();
    const bool paused = m_world.store().settings().pauseAllCountdowns;
    QSet<QString> listed;
    for (const LapsaItem& item : m_world.store().items()) {
        listed.insert(item.id);
        require(paused || item.locked || item.expiresAt > now - passInterval, u"an expired item leaves the list"_s);
    }
    for (const LapsaItem& item : before) {
        if (!listed.contains(item.id)) {
            require(!paused && !item.locked && item.isExpired(now), u"an item stays while it is not due"_s);
            followDisposal(item);
        }
    }
}

void ComingsAndGoings::followRecords(const QList<LapsaRecoveryItem>& before)
{
    const TimePoint now = m_world.time.now();
    QSet<QUuid> kept;
    for (const LapsaRecoveryItem& record : m_world.store().recoveryItems()) {
        kept.insert(record.id);
    }
    QSet<QUuid> known;
    for (const LapsaRecoveryItem& record : before) {
        known.insert(record.id);
        if (!kept.contains(record.id)) {
            require(record.purgeAfter <= now, u"a copy stays until its retention has run out"_s);
            m_places.remove(record.recoveryPath);
        }
    }
    for (const LapsaRecoveryItem& record : m_world.store().recoveryItems()) {
        if (!known.contains(record.id)) {
            require(record.deletedAt > now - betweenVisits - 1s && record.deletedAt <= now &&
                        record.purgeAfter == addingHours(record.deletedAt, retentionHours),
                    u"a copy just parked has its full retention"_s);
            require(m_places.contains(record.originalPath), u"only a file that was there is parked"_s);
            m_places[record.recoveryPath] = m_places.take(record.originalPath);
        }
    }
}

/// The records are followed before: a file that was parked is not at its place any more.
void ComingsAndGoings::followDisposal(const LapsaItem& item)
{
    m_ordinary.removeAll(item.path);
    if (!m_places.contains(item.path)) {
        return;
    }
    const Serial serial = m_places.take(item.path);
    const LapsaSettings& settings = m_world.store().settings();
    require(!settings.useRecoveryWindow, u"what expires is parked"_s);
    if (settings.useTrash) {
        m_trashed.insert(serial);
    }
}

void ComingsAndGoings::require(bool kept, const QString& promise)
{
    if (!kept && m_faults.size() < 20) {
        m_faults += QString::fromLatin1(iso8601Text(m_world.time.now())) + u": not so: "_s + promise;
    }
}

int ComingsAndGoings::random(int below)
{
    return int(m_generator() % unsigned(below));
}

LapsaItem ComingsAndGoings::anyItem()
{
    const QList<LapsaItem>& items = m_world.store().items();
    return items.at(random(int(items.size())));
}

} // namespace lapsa::test
