// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "Gallery.h"
#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "RulesTab.h"
#include "SplashView.h"
#include "Stepper.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// A folder with files in it. Its path, which is seen, is the same in every run.
class Downloads final
{
public:
    Downloads()
    {
        QDir().mkpath(m_path);
        for (int number = 1; number <= files; ++number) {
            QFile file(fileNamed(number));
            std::ignore = file.open(QIODevice::WriteOnly);
        }
    }

    Downloads(const Downloads&) = delete;
    Downloads& operator=(const Downloads&) = delete;

    ~Downloads()
    {
        for (int number = 1; number <= files; ++number) {
            QFile::remove(fileNamed(number));
        }
        QDir().rmdir(m_path);
        QDir().rmdir(QFileInfo(m_path).path());
    }

    [[nodiscard]] const QString& path() const { return m_path; }

    [[nodiscard]] QString fileNamed(int number) const { return m_path + u"/%1.pdf"_s.arg(number); }

    static constexpr int files = 11;

private:
    const QString m_path = QDir::temp().filePath(u"lapsa-gallery/Downloads"_s);
};

} // namespace

/// The second rule has extensions that the first one takes; the time of the first one is changed.
void Gallery::paintRules(Scene& scene, PreferencesView& view)
{
    const auto setSecondRule = [&scene](const QString& extensions) {
        scene.world.changeSettings(
            [&](LapsaSettings& settings) { settings.fileTypeRules[1].extensionsCSV = extensions; });
        QApplication::processEvents();
    };
    const QString before = scene.world.store().settings().fileTypeRules[1].extensionsCSV;
    setSecondRule(u".exe,.zip,.7z"_s);
    save(view, u"preferences-rules-taken"_s);
    setSecondRule(before);
    scene.add(u"Backup.zip"_s, 7 * 24 * 60);
    scene.add(u"Fonts.zip"_s, 7 * 24 * 60);
    QTest::keyClick(view.findChild<RulesTab*>()->findChild<Stepper*>(), Qt::Key_Up);
    save(view, u"preferences-rules-offer"_s);
}

void Gallery::paintPreferences()
{
    using Tab = PreferencesView::Tab;
    Scene scene;
    scene.world.store().addFileTypeRule();
    scene.world.letSavesPass();
    RecordingFolderPicker folderPicker;
    PreferencesView view(scene.world.store(), folderPicker, scene.world.time);
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
    paintRules(scene, view);
    const Downloads downloads;
    scene.world.home.makeFolder(u"Downloads"_s);
    view.showTab(Tab::Folders);
    QApplication::processEvents();
    save(view, u"preferences-folders-empty"_s);
    for (int number = 1; number <= 4; ++number) {
        scene.world.add(downloads.fileNamed(number));
    }
    scene.world.store().addAutoCleanFolder(QUrl::fromLocalFile(downloads.path()));
    // The same without the rules, below; it need not be there to be shown.
    scene.world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/home/somebody/Scans"_s));
    scene.world.changeSettings(
        [](LapsaSettings& settings) { settings.autoCleanFolders.last().applyFileTypeRules = false; });
    QApplication::processEvents();
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
