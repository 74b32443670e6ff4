// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreWorld.h"

#include <algorithm>

namespace lapsa::test {

using namespace std::chrono_literals;

StoreWorld::StoreWorld(bool run)
{
    if (run) {
        start();
        letSavesPass();
    }
}

void StoreWorld::start()
{
    stop();
    m_fileWriter.emplace(lanes);
    m_settingsStore.emplace(time, *m_fileWriter);
    m_store.emplace(*m_settingsStore, LapsaStore::Environment{.clock = time,
                                                              .mainQueue = time,
                                                              .lanes = lanes,
                                                              .fileWriter = *m_fileWriter,
                                                              .appearance = appearance,
                                                              .workspace = workspace,
                                                              .pasteboard = pasteboard});
}

void StoreWorld::stop()
{
    m_store.reset();
    m_settingsStore.reset();
    m_fileWriter.reset();
}

AddResult StoreWorld::added(const QList<QUrl>& urls)
{
    AddResult all;
    store().addFiles(urls, {}, [&all](const AddResult& result) { all.append(result); });
    return all;
}

LapsaStore::DeleteOutcome StoreWorld::deleted(const LapsaItem& item)
{
    std::optional<LapsaStore::DeleteOutcome> known;
    store().deleteNow(item, [&known](const LapsaStore::Deletion& deletion) { known = deletion.outcome; });
    return known.value();
}

void StoreWorld::changeSettings(const std::function<void(LapsaSettings&)>& change)
{
    LapsaSettings settings = store().settings();
    change(settings);
    store().setSettings(settings);
    letSavesPass();
}

LapsaItem StoreWorld::add(const QString& path, std::int64_t minutes)
{
    store().addFiles({QUrl::fromLocalFile(path)}, {.fixedLifespan = minutes});
    return item(path);
}

LapsaItem StoreWorld::item(const QString& path) const
{
    const QList<LapsaItem>& items = m_store->items();
    const auto found = std::ranges::find(items, path, &LapsaItem::path);
    if (found == items.cend()) {
        qFatal("%s is not on countdown", qPrintable(path));
    }
    return *found;
}

QStringList StoreWorld::listedNames() const
{
    QStringList names;
    for (const LapsaItem& item : m_store->items()) {
        names += item.displayName;
    }
    return names;
}

void StoreWorld::letSavesPass()
{
    time.advance(1s);
}

} // namespace lapsa::test
