// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ShownPanel.h"

#include "DesktopFacilities.h"
#include "FileIconProvider.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "JSONEncoder.h"
#include "PointerMonitor.h"
#include "WindowSystem.h"

#include <QApplication>

#include <array>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

QString nameOf(std::int64_t index)
{
    const std::array endings = {u".pdf"_s, u".zip"_s, u".txt"_s, u".png"_s, u""_s};
    return u"report %1"_s.arg(index) + endings[static_cast<std::size_t>(index) % endings.size()];
}

ShownPanel::ShownPanel(std::int64_t count)
    : m_windowSystem(makeWindowSystem())
    , m_pointer(makePointerMonitor())
{
    QList<LapsaItem> items;
    for (std::int64_t index = 0; index < count; ++index) {
        items.push_back({.id = u"item-%1"_s.arg(index),
                         .path = u"/nowhere/"_s + nameOf(index),
                         .displayName = nameOf(index),
                         .addedAt = m_world.time.now(),
                         .expiresAt = m_world.time.now() + 240h + 30s});
    }
    m_world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
    m_world.start();
    m_world.changeSettings([](LapsaSettings& settings) { settings.keepPanelOpen = true; });
    makeAnew();
}

ShownPanel::~ShownPanel() = default;

void ShownPanel::makeAnew()
{
    m_controller.emplace(PanelController::Environment{
        {m_world.store(), m_world.time, m_world.time, FileIconProvider::shared(), m_world.kinds, m_world.store()},
        m_folderPicker,
        *m_windowSystem,
        *m_pointer});
}

void ShownPanel::open()
{
    PaintNotes notes;
    m_controller->show(&m_button);
    notes.watch(m_controller->popover()->content());
    waitForFrame(notes);
}

void ShownPanel::settle()
{
    waitUntilActive(*m_controller->popover());
    QApplication::processEvents();
}

void ShownPanel::close()
{
    m_controller->close();
}

FileListView& ShownPanel::list() const
{
    return *m_controller->popover()->findChild<FileListView*>();
}

RowNotes::RowNotes(const FileListView& list)
{
    for (FileRowView* const row : list.findChildren<FileRowView*>()) {
        notes.watch(*row);
        for (QWidget* const child : row->findChildren<QWidget*>()) {
            notes.watch(*child);
        }
    }
}

qsizetype RowNotes::rows() const
{
    QSet<QObject*> rows;
    for (QObject* const painted : notes.painted) {
        rows.insert(qobject_cast<FileRowView*>(painted) != nullptr ? painted : painted->parent());
    }
    return rows.size();
}

} // namespace lapsa::bench
