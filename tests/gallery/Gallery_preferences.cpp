// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "Gallery.h"
#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "SplashView.h"

#include <QApplication>
#include <QFile>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>

namespace lapsa::test {

using namespace Qt::StringLiterals;

void Gallery::paintPreferences()
{
    using Tab = PreferencesView::Tab;
    Scene scene;
    scene.world.store().addFileTypeRule();
    // It need not be there to be shown.
    scene.world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/home/somebody/Downloads"_s));
    scene.world.letSavesPass();
    RecordingFolderPicker folderPicker;
    PreferencesView view(scene.world.store(), folderPicker);
    view.resize(PreferencesView::extent);
    view.show();
    view.showTab(Tab::General);
    save(view, u"preferences-general"_s);
    // The tab is higher than the window.
    for (const QScrollArea* const page : view.findChildren<QScrollArea*>()) {
        page->verticalScrollBar()->setValue(page->isVisible() ? page->verticalScrollBar()->maximum() : 0);
    }
    save(view, u"preferences-general-end"_s);
    view.showTab(Tab::Rules);
    save(view, u"preferences-rules"_s);
    view.showTab(Tab::Folders);
    save(view, u"preferences-folders"_s);
}

void Gallery::paintAlert()
{
    AlertDialog alert(u"Lapsa"_s, u"Use the menu bar icon to open Lapsa."_s, nullptr);
    alert.show();
    save(alert, u"alert"_s);
}

void Gallery::paintSplash()
{
    SplashView splash;
    splash.setTranslucent(true);
    save(splash, u"splash"_s);

    const QTemporaryDir pictures;
    QFile::copy(SplashView::defaultPictures() + u"/LapsaLogo.svg"_s, pictures.filePath(u"LapsaLogo.svg"_s));
    SplashView missing(pictures.path());
    missing.setTranslucent(true);
    save(missing, u"splash-picture-missing"_s);
}

} // namespace lapsa::test
