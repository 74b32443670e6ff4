// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddMessage.h"
#include "AddResult.h"
#include "DropZone.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "Gallery.h"
#include "LapsaPanelView.h"
#include "RowIconButton.h"
#include "TextStyle.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>
#include <tuple>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t day = 1440;

std::unique_ptr<LapsaPanelView> shownPanel(Scene& scene)
{
    auto panel = std::make_unique<LapsaPanelView>(LapsaPanelView::Environment{scene.world.store(), scene.world.time,
                                                                              scene.world.time, scene.icons,
                                                                              scene.world.kinds, scene.world.store()},
                                                  [] {});
    panel->setAttribute(Qt::WA_TranslucentBackground);
    panel->show();
    QTest::mouseMove(panel.get(), {2, 2}); // nothing is hovered
    QApplication::processEvents();
    return panel;
}

void fill(Scene& scene)
{
    scene.add(u"Quarterly report.pdf"_s, 90);
    scene.add(u"Screenshot 2026-03-01.png"_s, 12);
    scene.add(u"Holiday pictures/"_s, 7 * day);
    scene.add(u"installer-4.2.1.tar.gz"_s, 2 * day + 185);
    scene.add(u"notes.txt"_s, 45);
    scene.add(u"Interview.mp3"_s, 30 * day);
}

FileRowView* row(const LapsaPanelView& panel, qsizetype index)
{
    return panel.findChild<FileListView*>()->visibleRows().at(index);
}

/// As far as there are rows.
void showWork(const LapsaPanelView& panel)
{
    constexpr ItemWork works[] = {{ItemWork::Kind::Moving, 43, 100},
                                  {ItemWork::Kind::WaitingForDisk, 0, 0},
                                  {ItemWork::Kind::Removing, 12400, 0},
                                  {ItemWork::Kind::Stopped, 12400, 0}};
    const QList<FileRowView*> rows = panel.findChild<FileListView*>()->visibleRows();
    for (std::size_t index = 0; index < std::min(std::size(works), static_cast<std::size_t>(rows.size())); ++index) {
        rows.at(static_cast<qsizetype>(index))->setWork(works[index]);
    }
}

} // namespace

void Gallery::paintPanel()
{
    {
        Scene scene;
        save(*shownPanel(scene), u"panel-empty"_s);
        scene.add(u"Quarterly report.pdf"_s, 90);
        save(*shownPanel(scene), u"panel-one"_s);
    }
    {
        Scene scene;
        fill(scene);
        const auto panel = shownPanel(scene);
        paintPanelStates(scene, *panel);
        paintPanelMessage(scene, *panel);
    }
    paintPanelNames();
    paintPanelUndo();
    Scene mirrored;
    fill(mirrored);
    mirrored.world.time.setClock(mirrored.world.time.now() + std::chrono::minutes(60)); // two are overdue
    const auto panel = shownPanel(mirrored);
    panel->setLayoutDirection(Qt::RightToLeft);
    save(*panel, u"panel-overdue-right-to-left"_s);
}

void Gallery::paintPanelStates(Scene& scene, LapsaPanelView& panel)
{
    save(panel, u"panel-many"_s);
    panel.reveal({scene.world.store().items().at(2).id});
    save(panel, u"panel-added"_s);
    std::ignore = QTest::qWaitFor([&] { return row(panel, 2)->light() == 0; });

    auto* const timer = row(panel, 1)->findChildren<RowIconButton*>().at(0);
    QTest::mouseMove(timer, {15, 15});
    QEnterEvent enter({15, 15}, {15, 15}, {15, 15});
    QApplication::sendEvent(timer, &enter);
    save(panel, u"panel-hover"_s);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(timer, &leave);

    panel.activateWindow();
    row(panel, 2)->setFocus(Qt::TabFocusReason);
    save(panel, u"panel-focus"_s);
    row(panel, 2)->clearFocus();

    auto* const zone = panel.findChild<DropZone*>();
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(scene.world.home.path(u"notes.txt"_s))});
    QDragEnterEvent drag({20, 20}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(zone, &drag);
    save(panel, u"panel-drag-over"_s);
    QDragLeaveEvent dragLeave;
    QApplication::sendEvent(zone, &dragLeave);
}

void Gallery::paintPanelMessage(Scene& scene, LapsaPanelView& panel)
{
    LapsaStore& store = scene.world.store();
    store.toggleLock(store.items()[0]);
    store.toggleLock(store.items()[2]);
    for (int number = 1; number <= 11; ++number) {
        scene.world.home.makeFile(u"Holiday pictures/%1.jpg"_s.arg(number));
    }
    showAddMessage(store, {.ids = {},
                           .newFolders = {scene.world.home.path(u"Holiday pictures"_s)},
                           .refused = {{.path = u"/home/ada"_s, .reason = fileSystem::Refusal::Home}}});
    QApplication::processEvents();
    save(panel, u"panel-locked-message"_s);
}

void Gallery::paintPanelUndo()
{
    Scene scene;
    fill(scene);
    const auto panel = shownPanel(scene);
    const auto deleteRow = [&panel](qsizetype index) {
        QTest::mouseClick(row(*panel, index)->findChildren<RowIconButton*>().constLast(), Qt::LeftButton);
        QTest::mouseMove(panel.get(), {2, 2});
        QApplication::processEvents();
    };
    deleteRow(0);
    save(*panel, u"panel-deleted"_s);
    scene.world.changeSettings([](LapsaSettings& settings) { settings.useRecoveryWindow = false; });
    deleteRow(0);
    deleteRow(0);
    panel->setLayoutDirection(Qt::RightToLeft);
    save(*panel, u"panel-deleted-right-to-left"_s);
}

void Gallery::paintPanelNames()
{
    Scene scene;
    scene.add(u"A name that goes on for much longer than any row could ever show on its one line.docx"_s,
              365 * day - 1);
    scene.add(u"line\nbreak and <b>markup.html"_s, 5);
    scene.add(u"تقرير الربع الأول.pdf"_s, 61);
    save(*shownPanel(scene), u"panel-long-names"_s);

    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(20);
    QApplication::setFont(large);
    save(*shownPanel(scene), u"panel-large-text"_s);
    const auto covered = shownPanel(scene);
    QTest::mouseClick(row(*covered, 0)->findChildren<RowIconButton*>().at(0), Qt::LeftButton);
    save(*covered, u"sheet-large-text"_s);
    QApplication::setFont(usual);

    const auto panel = shownPanel(scene);
    QMenu menu;
    row(*panel, 0)->fillContextMenu(menu);
    menu.setFont(fontFor(bodyText));
    menu.popup({});
    menu.setActiveAction(menu.actions().at(1));
    save(menu, u"row-menu"_s);
}

void Gallery::paintInUse()
{
    // On another file system than Recovery, so that it has to be copied.
    const QTemporaryDir disk(u"/dev/shm/lapsa-XXXXXX"_s);
    QFile film(disk.filePath(u"Holiday film.mkv"_s));
    if (!film.open(QIODevice::WriteOnly)) {
        qFatal("a file at /dev/shm is needed");
    }
    Scene scene;
    scene.world.add(film.fileName(), 1);
    fill(scene);
    scene.world.time.advance(std::chrono::minutes(1));
    scene.world.store().deleteExpiredItems();
    save(*shownPanel(scene), u"panel-in-use"_s);
}

void Gallery::paintWork()
{
    Scene scene;
    fill(scene);
    const auto panel = shownPanel(scene);
    showWork(*panel);
    save(*panel, u"panel-work"_s);
    panel->setLayoutDirection(Qt::RightToLeft);
    save(*panel, u"panel-work-right-to-left"_s);

    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(20);
    QApplication::setFont(large);
    const auto largePanel = shownPanel(scene);
    showWork(*largePanel);
    save(*largePanel, u"panel-work-large-text"_s);
    QApplication::setFont(usual);
}

void Gallery::paintMany()
{
    Scene scene;
    fill(scene);
    const auto panel = shownPanel(scene);
    auto& list = *panel->findChild<FileListView*>();
    QTest::mouseClick(row(*panel, 0), Qt::LeftButton, Qt::ControlModifier);
    QTest::mouseClick(row(*panel, 2), Qt::LeftButton, Qt::ControlModifier);
    save(*panel, u"panel-selected"_s);
    QMenu menu;
    list.fillSelectionMenu(menu);
    menu.setFont(fontFor(bodyText));
    menu.popup({});
    save(menu, u"selection-menu"_s);
    menu.hide();
    QTest::keyClicks(panel.get(), u"re"_s);
    save(*panel, u"panel-filtered"_s);
    panel->setLayoutDirection(Qt::RightToLeft);
    save(*panel, u"panel-filtered-right-to-left"_s);

    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(20);
    QApplication::setFont(large);
    const auto largePanel = shownPanel(scene);
    QTest::keyClicks(largePanel.get(), u"re"_s);
    save(*largePanel, u"panel-filtered-large-text"_s);
    QApplication::setFont(usual);
}

void Gallery::paintSheet()
{
    Scene scene;
    fill(scene);
    const auto panel = shownPanel(scene);
    QTest::mouseClick(row(*panel, 0)->findChildren<RowIconButton*>().at(0), Qt::LeftButton);
    save(*panel, u"sheet"_s);
}

} // namespace lapsa::test
