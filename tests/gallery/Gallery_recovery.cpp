// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "FileIconProvider.h"
#include "Gallery.h"
#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "RecoveryListView.h"
#include "RecoveryView.h"
#include "StoreSetup.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <chrono>
#include <memory>

namespace lapsa::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double largeText = 20;

/// Parks a file of so many bytes as a pass does.
void parkFile(Scene& scene, const QString& relative, qint64 bytes)
{
    QFile file(scene.world.home.makeFile(relative));
    if (!file.resize(bytes)) {
        qFatal("cannot size %s", qPrintable(relative));
    }
    scene.world.store().deleteNow(scene.world.add(file.fileName()));
}

void fill(Scene& scene)
{
    LapsaStore& store = scene.world.store();
    parkFile(scene, u"Documents/Quarterly report.pdf"_s, 482'000);
    scene.world.time.advance(16h);
    parkFile(scene, u"Pictures/Screenshots of the week/Screenshot 2026-03-01 at 09.41.00.png"_s, 1'260'000);
    scene.world.time.advance(3h);
    scene.world.home.makeFile(u"Pictures/Holiday pictures/1.jpg"_s, QByteArray(7'300'000, 'x'));
    store.deleteNow(scene.world.add(scene.world.home.path(u"Pictures/Holiday pictures"_s)));
    scene.world.time.advance(1h);
    parkFile(scene, u"Downloads/installer-4.2.1.tar.gz"_s, qint64(1'288'490'188));
    scene.world.time.advance(12min);
    parkFile(scene, u"Downloads/notes.txt"_s, 2'148);
    QFile lost(scene.world.home.makeFile(recoveryFolder + u"/Contract scan.pdf"_s));
    lost.resize(842'000);
    scene.world.letSavesPass();
}

std::unique_ptr<RecoveryView> shownWindow(Scene& scene)
{
    auto window = std::make_unique<RecoveryView>(RecoveryView::Environment{
        .store = scene.world.store(),
        .clock = scene.world.time,
        .mainQueue = scene.world.time,
        .icons = [&scene](const QString& name, bool isFolder) {
            return isFolder ? QIcon::fromTheme(u"folder"_s)
                            : scene.icons.icon(QUrl::fromLocalFile(u'/' + name), ItemKind::File);
        }});
    window->show();
    window->activateWindow();
    QApplication::processEvents();
    return window;
}

} // namespace

void Gallery::paintRecovery()
{
    Scene scene;
    {
        const auto empty = shownWindow(scene);
        save(*empty, u"recovery-empty"_s);
    }
    fill(scene);
    const auto window = shownWindow(scene);
    auto& list = *window->findChild<RecoveryListView*>();
    save(*window, u"recovery"_s);
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
    save(*window, u"recovery-selected"_s);
    QTest::keyClick(&list, Qt::Key_Delete);
    save(*window->question(), u"recovery-question"_s);
    window->question()->reject();
    QApplication::processEvents();

    QTest::keyClicks(&list, u"pdf"_s);
    save(*window, u"recovery-filtered"_s);
    window->findChild<QLineEdit*>()->clear();
    paintRecoveryMessages(scene, *window);
}

/// What it says after something was put back, or was not.
void Gallery::paintRecoveryMessages(Scene& scene, RecoveryView& window)
{
    auto& list = *window.findChild<RecoveryListView*>();
    scene.world.home.makeFile(u"Downloads/notes.txt"_s, "another");
    list.selectionModel()->clear();
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        if (list.model()->index(row, 0).data().toString() == u"notes.txt"_s) {
            list.setCurrentIndex(list.model()->index(row, 0));
        }
    }
    QTest::keyClick(&list, Qt::Key_Return);
    QApplication::processEvents();
    save(window, u"recovery-put-back"_s);

    // A file is where the folder was.
    QDir(scene.world.home.path(u"Documents"_s)).removeRecursively();
    scene.world.home.makeFile(u"Documents"_s);
    list.setCurrentIndex(list.model()->index(list.model()->rowCount() - 1, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    QApplication::processEvents();
    save(window, u"recovery-failure"_s);
}

void Gallery::paintRecoveryVariants()
{
    Scene scene;
    fill(scene);
    QApplication::setLayoutDirection(Qt::RightToLeft);
    {
        const auto window = shownWindow(scene);
        auto& list = *window->findChild<RecoveryListView*>();
        QTest::keyClick(&list, Qt::Key_Down);
        save(*window, u"recovery-right-to-left"_s);
    }
    QApplication::setLayoutDirection(Qt::LeftToRight);
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(largeText);
    QApplication::setFont(large);
    {
        const auto window = shownWindow(scene);
        window->resize(RecoveryView::extent);
        auto& list = *window->findChild<RecoveryListView*>();
        QTest::keyClick(&list, Qt::Key_Down);
        save(*window, u"recovery-large-text"_s);
    }
    QApplication::setFont(usual);

    RecordingFolderPicker folderPicker;
    PreferencesView preferences(scene.world.store(), folderPicker, scene.world.time);
    preferences.resize(PreferencesView::extent);
    preferences.show();
    preferences.showTab(PreferencesView::Tab::General);
    QApplication::processEvents();
    for (const QScrollArea* const page : preferences.findChildren<QScrollArea*>()) {
        page->verticalScrollBar()->setValue(page->isVisible() ? page->verticalScrollBar()->maximum() : 0);
    }
    save(preferences, u"preferences-general-recovery"_s);
}

} // namespace lapsa::test
