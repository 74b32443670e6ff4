// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Promise.h"

#include "FaultWorld.h"
#include "JSONDecoder.h"
#include "LapsaRecoveryItem.h"
#include "LapsaSettings.h"
#include "VersionLog.h"

#include <QFile>
#include <QList>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace lapsa::test {

namespace {

constexpr const char* unfinishedName = "/.lapsa-copy-";

QByteArray contentOf(const QByteArray& path)
{
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isThere(const QByteArray& path)
{
    return ::faccessat(AT_FDCWD, path.constData(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

/// Whether these are the bytes that a start writes in the place of what it cannot read.
bool isDefault(VersionLog::File file, const QByteArray& bytes)
{
    if (file != VersionLog::Settings) {
        return bytes.simplified().replace(' ', "") == "[]";
    }
    auto settings = JSONDecoder::lapsa().decode<LapsaSettings>(bytes);
    if (!settings) {
        return false;
    }
    settings->fileTypeRules = LapsaSettings::defaults().fileTypeRules; // their ids are fresh each time
    return *settings == LapsaSettings::defaults();
}

} // namespace

Promise::Promise(const FaultWorld& world, const Scenario& scenario)
    : m_world(world)
    , m_scenario(scenario)
    , m_documents(scenario.desk(world).documents.toUtf8())
    , m_data(world.dataFolder().toUtf8())
{
    for (const FileFound& file : everything()) {
        const Spot spot = spotOf(file);
        if (spot == Spot::Own || spot == Spot::Unfinished) {
            continue;
        }
        const auto known =
            std::ranges::find_if(m_remembered, [&](const auto& one) { return one.file.key == file.key; });
        if (known == m_remembered.end()) {
            m_remembered.push_back({.file = file, .paths = {file.path}, .mayGo = mayGo(file.path)});
        } else {
            known->paths.push_back(file.path);
        }
    }
}

QList<QByteArray> Promise::broken(After after)
{
    QList<QByteArray> findings;
    m_doubled = 0;
    m_unrecorded = 0;
    readRecords();
    const std::vector<FileFound> found = everything();
    for (const Remembered& wanted : m_remembered) {
        findings.push_back(whereIs(wanted, found, after));
    }
    for (const FileFound& file : found) {
        findings.push_back(strange(file, after));
        findings.push_back(withoutRecord(file));
        if (const QByteArray finding = notListed(file); after == After::Restart) {
            findings.push_back(finding);
        }
    }
    checkOwnFiles(after, findings);
    findings.removeIf([](const QByteArray& finding) { return finding.isEmpty(); });
    return findings;
}

std::vector<FileFound> Promise::everything() const
{
    std::vector<FileFound> files = filesBelow(m_world.home().toUtf8());
    std::ranges::move(filesBelow(m_world.volume().toUtf8()), std::back_inserter(files));
    return files;
}

Promise::Spot Promise::spotOf(const FileFound& file) const
{
    const QByteArray& path = file.path;
    if (path.contains(unfinishedName)) {
        return Spot::Unfinished;
    }
    if (path.startsWith(m_data + "/Recovery/")) {
        return Spot::Recovery;
    }
    // The copies of lists that could not be read are beside the promise.
    if (path.startsWith(m_data + '/') || path.contains("/.local/state/Lapsa/")) {
        return Spot::Own;
    }
    if (path.contains("/Trash/files/") || path.contains("/.Trash-" + QByteArray::number(::geteuid()) + "/files/")) {
        return Spot::Trash;
    }
    if (path.endsWith(".trashinfo")) {
        return Spot::Own;
    }
    if (m_scenario.restores && path.startsWith(m_documents + '/')) {
        return Spot::Place;
    }
    const bool inPlace = std::ranges::any_of(
        m_remembered, [&](const Remembered& one) { return one.file.key == file.key && one.paths.contains(path); });
    return inPlace ? Spot::Place : Spot::Elsewhere;
}

bool Promise::mayGo(const QByteArray& path) const
{
    const auto isIn = [&path](const QByteArray& folder, const QStringList& names) {
        return std::ranges::any_of(
            names, [&](const QString& name) { return (path + '/').startsWith(folder + '/' + name.toUtf8() + '/'); });
    };
    return isIn(m_documents, m_scenario.mayGo) || isIn(m_data + "/Recovery", m_scenario.mayGoFromRecovery);
}

/// Empty where the file is where it may be.
QByteArray Promise::whereIs(const Remembered& wanted, const std::vector<FileFound>& found, After after)
{
    int names = 0;
    bool unfinished = false;
    bool asItWas = false;
    QByteArray paths;
    for (const FileFound& file : found) {
        if (file.key != wanted.file.key) {
            continue;
        }
        paths += ' ' + file.path;
        const Spot spot = spotOf(file);
        unfinished = unfinished || spot == Spot::Unfinished;
        if (spot == Spot::Place || spot == Spot::Recovery || spot == Spot::Trash) {
            ++names;
            asItWas = asItWas || file.attributes == wanted.file.attributes;
        }
    }
    if (wanted.mayGo) {
        return {};
    }
    if (names == 0) {
        return (unfinished ? "only as an unfinished copy: " : "LOST: ") + wanted.file.path + " now at" + paths;
    }
    if (!asItWas) {
        return "mode, time or attributes lost: " + wanted.file.path + " now at" + paths;
    }
    if (names < int(wanted.paths.size())) {
        return "a name is lost: " + wanted.file.path + " now at" + paths;
    }
    if (names > int(wanted.paths.size())) {
        ++m_doubled;
        return m_scenario.mayDouble() && after != After::Restart
                   ? QByteArray()
                   : "two of one: " + wanted.file.path + " now at" + paths;
    }
    return {};
}

/// Empty where the file has a reason to be there.
QByteArray Promise::strange(const FileFound& file, After after) const
{
    const Spot spot = spotOf(file);
    if (spot == Spot::Unfinished) {
        return after == After::Restart ? "an unfinished copy is left: " + file.path : QByteArray();
    }
    // At its old place, a file whose removal from Recovery could not be confirmed may keep it.
    if (file.marked && spot == Spot::Recovery && after == After::Restart) {
        return "still marked as a copy: " + file.path;
    }
    if (spot == Spot::Own) {
        return after == After::Restart && file.path.endsWith(".tmp") ? "left over: " + file.path : QByteArray();
    }
    const bool known =
        std::ranges::any_of(m_remembered, [&](const Remembered& one) { return one.file.key == file.key; });
    if (!known) {
        return "a part of a file, or a stranger: " + file.path;
    }
    return spot == Spot::Elsewhere ? "in a strange place: " + file.path : QByteArray();
}

/// Empty where what is in the trash can be put back from there.
QByteArray Promise::withoutRecord(const FileFound& file) const
{
    const qsizetype files = file.path.indexOf("/files/");
    if (spotOf(file) != Spot::Trash || files < 0) {
        return {};
    }
    const QByteArray inside = file.path.sliced(files + qsizetype(qstrlen("/files/")));
    const qsizetype slash = inside.indexOf('/');
    const QByteArray name = slash < 0 ? inside : inside.first(slash);
    const QByteArray record = contentOf(file.path.first(files) + "/info/" + name + ".trashinfo");
    const bool whole =
        record.startsWith("[Trash Info]\nPath=") && record.contains("\nDeletionDate=") && record.endsWith('\n');
    return whole ? QByteArray() : "in the trash without a record: " + file.path;
}

void Promise::readRecords()
{
    m_recorded.clear();
    const auto records = JSONDecoder::lapsa().decodeList<LapsaRecoveryItem>(contentOf(m_data + "/recovery.json"));
    for (const LapsaRecoveryItem& record : records.value_or(QList<LapsaRecoveryItem>())) {
        const QByteArray path = record.recoveryPath.toUtf8();
        m_recorded.insert(path.sliced(path.lastIndexOf('/') + 1));
    }
}

/// Empty where the window of Recovery can put the copy back to where it was.
QByteArray Promise::notListed(const FileFound& file)
{
    const QByteArray folder = m_data + "/Recovery/";
    // What is to go may stay there if it cannot be removed. A start that could not read the lists knows no records.
    if (spotOf(file) != Spot::Recovery || mayGo(file.path) || VersionLog::shared().recordsWereLost() ||
        m_nothingWasSaved) {
        return {};
    }
    const QByteArray inside = file.path.sliced(folder.size());
    if (m_recorded.contains(inside.first(inside.indexOf('/') < 0 ? inside.size() : inside.indexOf('/')))) {
        return {};
    }
    ++m_unrecorded;
    return "in Recovery without a record: " + file.path;
}

void Promise::checkOwnFiles(After after, QList<QByteArray>& findings)
{
    const VersionLog& log = VersionLog::shared();
    if (after == After::Fault) {
        // Until its end the program could save neither what came onto the list nor what left it.
        m_nothingWasSaved = !log.keepsPromise(VersionLog::State, contentOf(m_data + "/state.json")) &&
                            !log.keepsPromise(VersionLog::Recovery, contentOf(m_data + "/recovery.json"));
    }
    constexpr std::pair<VersionLog::File, const char*> files[] = {{VersionLog::Settings, "/settings.json"},
                                                                  {VersionLog::State, "/state.json"},
                                                                  {VersionLog::Recovery, "/recovery.json"}};
    for (const auto& [file, name] : files) {
        const QByteArray path = m_data + name;
        if (!isThere(path)) {
            if (after == After::Restart || !m_scenario.firstStart) {
                findings.push_back("missing: " + path);
            }
            continue;
        }
        const QByteArray bytes = contentOf(path);
        const bool duringStart = log.starting() && isDefault(file, bytes);
        if (!log.knows(file, bytes) && !duringStart) {
            findings.push_back("no whole version: " + path);
        } else if (after != After::Fault && !log.keepsPromise(file, bytes) && !duringStart) {
            findings.push_back("older than promised: " + path);
        }
    }
}

} // namespace lapsa::test
