// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ManyItems.h"

#include "FileListView.h"
#include "FileRowView.h"
#include "JSONEncoder.h"

#include <QTest>

#include <tuple>

namespace lapsa::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

ManyItems::ManyItems(int count, const std::function<std::chrono::seconds(int)>& lifespanOf)
{
    QList<LapsaItem> items;
    for (int index = 0; index < count; ++index) {
        const std::chrono::seconds lifespan = lifespanOf ? lifespanOf(index) : 90min;
        items.push_back({.id = u"item-%1"_s.arg(index),
                         .path = u"/nowhere/"_s + nameOf(index),
                         .displayName = nameOf(index),
                         .addedAt = world.time.now(),
                         .expiresAt = world.time.now() + lifespan});
    }
    world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
    world.start();
    panel = std::make_unique<LapsaPanelView>(
        LapsaPanelView::Environment{world.store(), world.time, world.time, icons, world.kinds, world.store()}, [] {});
    panel->show();
    panel->activateWindow();
    std::ignore = QTest::qWaitForWindowActive(panel.get()); // on a real display the window manager decides when
    PanelWorld::settle();
}

QString ManyItems::nameOf(int index)
{
    return u"file %1.txt"_s.arg(index);
}

FileListView& ManyItems::list() const
{
    return *panel->findChild<FileListView*>();
}

FileRowView& ManyItems::row(qsizetype index) const
{
    return *list().visibleRows().at(index);
}

QStringList ManyItems::shown() const
{
    QStringList names;
    for (const FileRowView* const row : list().visibleRows()) {
        names.push_back(row->item().displayName);
    }
    return names;
}

qsizetype ManyItems::rowWidgets() const
{
    return panel->findChildren<FileRowView*>().size();
}

void ManyItems::remove(int index)
{
    world.store().removeFromList(world.item(u"/nowhere/"_s + nameOf(index)));
    PanelWorld::settle();
}

} // namespace lapsa::test
