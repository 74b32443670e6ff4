// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ChooserModel.h"
#include "LaneJob.h"

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

ListOrder::By keyOf(int column)
{
    switch (column) {
    case ChooserModel::Size:
        return ListOrder::By::Size;
    case ChooserModel::Changed:
        return ListOrder::By::Changed;
    default:
        return ListOrder::By::Name;
    }
}

QHash<QString, int> placesIn(const ListedEntries& entries)
{
    QHash<QString, int> places;
    places.reserve(qsizetype(entries.size()));
    for (int place = 0; place < static_cast<int>(entries.size()); ++place) {
        places.insert(entries[std::size_t(place)]->name, place);
    }
    return places;
}

} // namespace

void ChooserModel::showFolder(const QString& folder)
{
    m_folder = folder;
    m_isRead = false;
    m_isSettled = false;
    takeOver({});
    begin();
}

/// Times of folders are coarse: after a change was seen, a further one can have the same time. So the folder is read
/// once more when its time has stayed.
void ChooserModel::refresh()
{
    if (m_look.isAsking()) {
        return;
    }
    m_look.ask({.folder = m_folder, .path = m_folder, .work = [this, folder = m_folder](LaneJob&) -> Lanes::Report {
                    return [this, change = FolderReading::changeOf(folder)] {
                        const bool wasSettled = std::exchange(m_isSettled, change == m_change);
                        if (!wasSettled || !m_isSettled) {
                            readAgain();
                        }
                    };
                }});
}

void ChooserModel::readAgain()
{
    if (!m_reading) {
        begin();
    }
}

void ChooserModel::begin()
{
    m_reading = std::make_shared<FolderReading>(m_folder, m_foldersOnly);
    readOn();
}

/// Each time that as much again is known, it is shown. A folder that was read before is shown again at the end only.
void ChooserModel::readOn()
{
    const std::size_t enough = m_isRead ? std::size_t(-1) : 2 * m_all.size();
    m_look.ask({.folder = m_folder,
                .path = m_folder,
                .work = [this, reading = m_reading, order = m_order, enough](LaneJob& job) -> Lanes::Report {
                    if (!reading->isOver()) {
                        reading->readOn(job);
                    }
                    const bool isShown = reading->isOver() || reading->count() >= enough;
                    return [this, reading, order, entries = isShown ? reading->sorted(order, job) : ListedEntries()] {
                        noteRead(reading, order, entries);
                    };
                }});
}

void ChooserModel::noteRead(const std::shared_ptr<FolderReading>& reading, const ListOrder& order,
                            const ListedEntries& entries)
{
    if (!entries.empty() && order == m_order) {
        takeOver(entries);
    }
    if (!reading->isOver() || order != m_order) {
        readOn();
        emit grew();
        return;
    }
    m_reading.reset();
    m_change = reading->change();
    const bool isFirst = !std::exchange(m_isRead, true);
    if (entries.empty()) {
        takeOver({});
    }
    if (isFirst && !reading->foundFolder()) {
        m_isRead = false;
        emit noFolder();
    } else {
        emit grew();
    }
}

void ChooserModel::setHiddenShown(bool shown)
{
    m_hiddenShown = shown;
    update(shownOf(m_all));
}

void ChooserModel::sort(int column, Qt::SortOrder order)
{
    m_order = {.by = keyOf(column), .descending = order == Qt::DescendingOrder};
    if (m_all.empty()) {
        return;
    }
    m_lanes.runOn(
        u"sorting"_s,
        [model = QPointer(this), order = m_order, version = m_version,
         entries = m_all](LaneJob& job) mutable -> Lanes::Report {
            sortEntries(entries, order, job);
            return [model, order, version, entries = std::move(entries)] {
                if (model && model->m_order == order && model->m_version == version) {
                    model->takeOver(entries);
                }
            };
        },
        Lanes::AtTheEnd::Drop);
}

void ChooserModel::takeOver(const ListedEntries& entries)
{
    m_all = entries;
    ++m_version;
    update(shownOf(m_all));
}

ListedEntries ChooserModel::shownOf(const ListedEntries& entries) const
{
    ListedEntries shown;
    shown.reserve(entries.size());
    std::ranges::copy_if(entries, std::back_inserter(shown),
                         [this](const auto& entry) { return m_hiddenShown || !entry->name.startsWith(u'.'); });
    return shown;
}

/// Keeps the selection, and what the user sees, on the entries that stay.
void ChooserModel::update(const ListedEntries& next)
{
    if (next.empty()) {
        removeFrom(0);
        return;
    }
    if (m_rows.empty()) {
        append(next);
        return;
    }
    const QHash<QString, int> places = placesIn(next);
    std::vector<bool> isShown(next.size());
    for (const auto& entry : m_rows) {
        if (const auto place = places.constFind(entry->name); place != places.cend()) {
            isShown[std::size_t(*place)] = true;
        }
    }
    ListedEntries added;
    for (std::size_t place = 0; place < next.size(); ++place) {
        if (!isShown[place]) {
            added.push_back(next[place]);
        }
    }
    append(added);
    arrange(next, places);
    removeFrom(static_cast<int>(next.size()));
    emit dataChanged(index(0, Name), index(rowCount() - 1, Changed));
}

void ChooserModel::append(const ListedEntries& added)
{
    if (!added.empty()) {
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
        m_rows.insert(m_rows.end(), added.begin(), added.end());
        endInsertRows();
    }
}

void ChooserModel::arrange(const ListedEntries& next, const QHash<QString, int>& places)
{
    std::vector<int> newRows(m_rows.size());
    ListedEntries rows = next;
    bool moves = false;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        const int place = places.value(m_rows[row]->name, -1);
        newRows[row] = place >= 0 ? place : static_cast<int>(rows.size());
        moves = moves || newRows[row] != static_cast<int>(row);
        if (place < 0) {
            rows.push_back(m_rows[row]);
        }
    }
    if (!moves) {
        m_rows = std::move(rows);
        return;
    }
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& old : before) {
        after.push_back(index(newRows[std::size_t(old.row())], old.column()));
    }
    m_rows = std::move(rows);
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void ChooserModel::removeFrom(int row)
{
    if (row < rowCount()) {
        beginRemoveRows({}, row, rowCount() - 1);
        m_rows.resize(std::size_t(row));
        endRemoveRows();
    }
}

} // namespace lapsa
