// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileChooser.h"
#include "FolderChooser.h"
#include "Gallery.h"
#include "Localized.h"
#include "ManualLanes.h"
#include "ManualTime.h"
#include "Material.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTreeView>

#include <chrono>
#include <filesystem>
#include <memory>
#include <tuple>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds patience{10'000};

/// What is in the home folder of the pictures, always of the same age.
void furnish(const TemporaryHome& home)
{
    for (const QString& folder : {u"Desktop"_s, u"Documents"_s, u"Downloads"_s, u"Music"_s, u"Pictures"_s, u"Videos"_s,
                                  u"Documents/Invoices"_s, u"Documents/Letters"_s, u"Documents/Old drafts"_s}) {
        std::ignore = home.makeFolder(folder);
    }
    home.makeFile(u"Documents/Quarterly report.pdf"_s, QByteArray(482'000, 'x'));
    home.makeFile(u"Documents/Screenshot 2026-03-01.png"_s, QByteArray(1'240'000, 'x'));
    home.makeFile(u"Documents/installer-4.2.1.tar.gz"_s, QByteArray(5'300'000, 'x'));
    home.makeFile(u"Documents/notes.txt"_s, QByteArray(2'100, 'x'));
    using namespace std::chrono;
    const sys_days day = 2026y / March / 1;
    const auto time = file_clock::from_sys(sys_seconds(day + 9h + 41min));
    const std::filesystem::path root(home.path({}).toStdString());
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        std::filesystem::last_write_time(entry.path(), time);
    }
}

QTreeView& loadedNames(const Chooser& chooser, int rows)
{
    auto* const names = chooser.findChild<QTreeView*>();
    const auto loaded = [names, rows] { return names->model()->rowCount(names->rootIndex()) == rows; };
    if (!QTest::qWaitFor(loaded, static_cast<int>(patience.count()))) {
        qFatal("the folder is not shown");
    }
    return *names;
}

void select(QTreeView& names, int row)
{
    names.selectionModel()->select(names.model()->index(row, 0, names.rootIndex()),
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

} // namespace

void Gallery::paintChoosers()
{
    const TemporaryHome home;
    furnish(home);
    ManualLanes lanes(ManualLanes::Runs::AtOnce);
    ManualTime time;
    const ChooserEnvironment environment{lanes, time};
    {
        FileChooser chooser(environment, home.path(u"Documents"_s), nullptr);
        chooser.show();
        QTreeView& names = loadedNames(chooser, 7);
        save(chooser, u"chooser-files"_s);
        select(names, 0);
        select(names, 4);
        save(chooser, u"chooser-files-selected"_s);
    }
    FolderChooser chooser(environment, {}, nullptr);
    chooser.show();
    QTreeView& names = loadedNames(chooser, 6);
    save(chooser, u"chooser-folder"_s);
    select(names, 2);
    save(chooser, u"chooser-folder-selected"_s);
    paintFieldMenu(*chooser.findChild<QLineEdit*>());
    paintWaitingChooser(home.path(u"Documents"_s));
}

/// Its disk does not answer.
void Gallery::paintWaitingChooser(const QString& folder)
{
    ManualLanes lanes;
    ManualTime time;
    FileChooser chooser({lanes, time}, folder, nullptr);
    chooser.show();
    lanes.runNext(); // the names of the places
    const Lanes::Report reading = lanes.takeNext();
    lanes.runAll();
    time.advance(std::chrono::seconds(1));
    save(chooser, u"chooser-files-waiting"_s);
}

void Gallery::paintFieldMenu(QLineEdit& field)
{
    field.setText(u"Documents"_s);
    field.selectAll();
    for (const bool compositing : {false, true}) {
        material::setTranslucencyAvailable(compositing);
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        menu->popup({});
        menu->setActiveAction(menu->actions().at(4));
        save(*menu, compositing ? u"field-menu-compositing"_s : u"field-menu"_s);
    }
    material::setTranslucencyAvailable(false);
}

} // namespace lapsa::test
