// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ParentCache.h"
#include "TrashFolder.h"
#include "TrashName.h"

#include <QDateTime>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

QByteArray pathOf(const QByteArray& folder, const AtPath& place)
{
    return (folder == "/" ? folder : folder + '/') + place.name;
}

/// Of a record: everything up to the date.
QByteArray pathLineOf(const QByteArray& text)
{
    return text.first(text.indexOf("\nDeletionDate=") + 1);
}

/// So many files of one name in the trash are looked at.
constexpr int mostLeftovers = 100;

} // namespace

void TrashFolder::prepare(std::span<const QString> paths)
{
    ParentCache ahead;
    bool isHere = false;
    for (const QString& path : paths) {
        if (ahead.goTo(path) != 0) {
            continue;
        }
        const AtPath& place = ahead.place();
        if (!ahead.isShared()) {
            const Result<struct statx> status = statAt(place.folder.get(), "", STATX_INO | STATX_MNT_ID);
            isHere = status && isOnMountOf(status.value());
        }
        const Result<QByteArray> folder = ahead.realPathOf(place.folder);
        if (!isHere || !folder) {
            continue;
        }
        Result<TrashRecord> record = freeRecord(folder.value(), place);
        if (!record) {
            return; // take() will fail too, and reports it
        }
        m_prepared.push_back({.path = pathOf(folder.value(), place), .record = std::move(record).value()});
        m_prepared.back().record.startWriting();
    }
}

Result<TrashRecord> TrashFolder::freeRecord(const QByteArray& folder, const AtPath& place)
{
    const QByteArray text = textOf(folder, place);
    TrashName name(m_infoIdentity, place.name);
    Result<TrashRecord> record = TrashRecord::make(m_info.get(), name.current(), text);
    while (!record && record.error().code == EEXIST) {
        name.advance();
        record = TrashRecord::make(m_info.get(), name.current(), text);
    }
    if (record) {
        name.remember();
    }
    return record;
}

std::optional<TrashRecord> TrashFolder::preparedRecord(const QByteArray& path)
{
    const auto found = std::ranges::find(m_prepared, path, &Prepared::path);
    // The entries before it were not taken. If it is not in the list, an unexpected entry has come: then all prepared
    // names are released.
    m_prepared.erase(m_prepared.begin(), found);
    if (m_prepared.empty()) {
        return {};
    }
    std::optional<TrashRecord> record = std::move(m_prepared.front().record);
    m_prepared.pop_front();
    return record;
}

int TrashFolder::take(const QByteArray& folder, const AtPath& place, const FileIdentity& identity)
{
    if (std::optional<TrashRecord> prepared = preparedRecord(pathOf(folder, place))) {
        const int error = takeAs(place, identity, *prepared);
        if (error != EEXIST) {
            return error;
        }
    }
    const QByteArray text = textOf(folder, place);
    TrashName name(m_infoIdentity, place.name);
    int error = takeAs(place, identity, name.current(), text);
    while (error == EEXIST) {
        name.advance();
        error = takeAs(place, identity, name.current(), text);
    }
    if (error == 0) {
        name.remember();
    }
    return error;
}

int TrashFolder::finishTaking(const QByteArray& folder, const AtPath& place, const FileIdentity& identity)
{
    const QByteArray text = textOf(folder, place);
    TrashName name(m_infoIdentity, place.name);
    for (int looked = 0; looked < mostLeftovers; ++looked, name.advance()) {
        const Result<QByteArray> record = TrashRecord::read(m_info.get(), name.current());
        if (!record) {
            return ENOENT;
        }
        m_inFiles.name = name.current();
        if (!stands(m_inFiles, identity) || !record.value().startsWith(pathLineOf(text))) {
            continue;
        }
        const int error = errorOf([&] { return ::unlinkat(place.folder.get(), place.name.constData(), 0); });
        if (error != 0 && stands(place, identity)) {
            return moveUnfinished;
        }
        m_lastName = name.current();
        return 0;
    }
    return ENOENT;
}

QByteArray TrashFolder::textOf(const QByteArray& folder, const AtPath& place)
{
    QByteArray path = pathOf(folder, place);
    if (!m_top.isEmpty()) {
        path = path.sliced(m_top == "/" ? 1 : m_top.size() + 1);
    }
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate=" + deletionDate() + '\n';
}

const QByteArray& TrashFolder::deletionDate()
{
    // Formatted only when it changes, not for each of many files.
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const qint64 second = now.toSecsSinceEpoch();
    if (m_dateSecond != second) {
        m_dateSecond = second;
        // Local time without a zone, as the Trash rules require.
        m_date = now.toLocalTime().toString(u"yyyy-MM-ddTHH:mm:ss"_s).toLatin1();
    }
    return m_date;
}

int TrashFolder::takeAs(const AtPath& place, const FileIdentity& identity, const QByteArray& name,
                        const QByteArray& text)
{
    Result<TrashRecord> record = TrashRecord::make(m_info.get(), name, text);
    return record ? takeAs(place, identity, record.value()) : record.error().code;
}

int TrashFolder::takeAs(const AtPath& place, const FileIdentity& identity, TrashRecord& record)
{
    if (const int error = record.finishWriting()) {
        return error;
    }
    m_inFiles.name = record.name();
    int error = renameWithoutReplacing(place, m_inFiles);
    if (error != 0 && hasArrived(place, identity, m_inFiles)) {
        error = 0;
    }
    if (error == moveUnfinished) {
        record.keep();
    }
    if (error == 0) {
        record.keep();
        m_lastName = record.name();
    }
    return error;
}

} // namespace lapsa
