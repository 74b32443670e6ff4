// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "DelegateWorld.h"
#include "DropZone.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "LapsaPanelView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "RowIconButton.h"
#include "SplashView.h"
#include "SurfaceTexts.h"
#include "ToolkitTexts.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QTreeView>

#include <array>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// Names and paths of the files here have it in them: what the user wrote is in no language.
const QString mark = u"xyzzy"_s;

/// Words that are the same in both languages, and what is in English on purpose: the names of the two themes, the
/// quick choices of the sheet, and the alert.
bool isSameInBoth(const QString& text)
{
    static const QSet<QString> words{u"Lapsa"_s,    u"Dark"_s, u"Light"_s, u"OK"_s,
                                     u"Computer"_s, u"1d"_s,   u"7d"_s,    u"Use the menu bar icon to open Lapsa."_s};
    // Times such as "1h 30m", units such as "min", extensions such as ".tmp".
    static const QRegularExpression figures(u"^[\\d\\s:./,+-]*((h|m|min|s)[\\d\\s]*)*$"_s);
    static const QRegularExpression extensions(u"^(\\.\\w+,?\\s*)+$"_s);
    // Keys without a name of their own in either language.
    static const QRegularExpression keys(u"^(Ctrl|Alt)\\+\\w$"_s);
    return words.contains(text) || text.contains(mark) || figures.match(text).hasMatch() ||
           extensions.match(text).hasMatch() || keys.match(text).hasMatch();
}

/// The rows, locked and not, files and folders, with what their menus and sheet say.
Texts panelTexts()
{
    Texts texts;
    PanelWorld world;
    noteSurface(texts, world.panel);
    world.addItem(mark + u".txt"_s, 90);
    noteSurface(texts, world.panel);
    world.addItem(mark + u"-folder/"_s, 7 * 1440 + 61);
    world.addItem(mark + u"-locked.txt"_s, 1);
    world.store().toggleLock(world.store().items()[2]);
    PanelWorld::settle();
    noteSurface(texts, world.panel);
    for (qsizetype row = 0; row < 3; ++row) {
        QMenu menu;
        world.row(row).fillContextMenu(menu);
        noteActions(texts, menu.actions());
    }
    QTest::mouseClick(world.row(0).findChildren<RowIconButton*>().at(0), Qt::LeftButton);
    PanelWorld::settle();
    noteSurface(texts, world.panel);
    return texts;
}

Texts preferencesTexts()
{
    Texts texts;
    PreferencesWorld world;
    world.view.showTab(PreferencesView::Tab::Rules);
    noteSurface(texts, world.view);
    world.view.showTab(PreferencesView::Tab::Folders);
    noteSurface(texts, world.view);
    world.store().addFileTypeRule();
    world.store().addAutoCleanFolder(QUrl::fromLocalFile(world.home.makeFolder(mark)));
    world.changeElsewhere([](LapsaSettings& settings) {
        settings.autoCleanFolders.push_back(LapsaAutoCleanFolderRule());
        settings.recoveryRetentionHours = 48;
    });
    for (const auto tab : {PreferencesView::Tab::General, PreferencesView::Tab::Rules, PreferencesView::Tab::Folders}) {
        world.view.showTab(tab);
        world.settle();
        noteSurface(texts, world.view);
    }
    return texts;
}

Texts textsOfOpenChooser(QWidget& opener, const QString& folder)
{
    Texts texts;
    auto* const chooser = opener.findChild<QDialog*>();
    auto* const field = chooser->findChild<QLineEdit*>();
    field->setText(folder);
    QTest::keyClick(field, Qt::Key_Return);
    auto* const names = chooser->findChild<QTreeView*>();
    if (!QTest::qWaitFor([names] { return names->model()->rowCount(names->rootIndex()) == 2; }, 10'000)) {
        qFatal("the folder is not shown");
    }
    names->selectAll();
    noteSurface(texts, *chooser);
    return texts;
}

Texts fileChooserTexts()
{
    PanelWorld world;
    world.home.makeFile(mark + u"/"_s + mark + u".txt"_s, "");
    world.home.makeFolder(mark + u"/"_s + mark);
    QTest::mouseClick(world.panel.findChild<DropZone*>(), Qt::LeftButton);
    return textsOfOpenChooser(world.panel, world.home.path(mark));
}

Texts folderChooserTexts()
{
    PreferencesWorld world;
    world.home.makeFolder(mark + u"/"_s + mark);
    world.home.makeFolder(mark + u"/"_s + mark + u"-2"_s);
    world.view.showTab(PreferencesView::Tab::Folders);
    for (PushButton* const button : world.view.findChildren<PushButton*>()) {
        if (button->isVisible() && (button->text() == u"Add folder"_s || button->text() == u"Aggiungi cartella"_s)) {
            button->click();
        }
    }
    world.settle();
    return textsOfOpenChooser(world.view, world.home.path(mark));
}

/// The menu and the tooltip of the icon in the tray, the splash, and the title and button of a desktop's dialog.
Texts programTexts()
{
    DelegateWorld program;
    program.start();
    Texts texts;
    for (const StatusMenuEntry& entry : program.menu()) {
        note(texts, entry.title);
    }
    for (const QString& text : program.button().toolTips + program.button().titles) {
        note(texts, text);
    }
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (qobject_cast<SplashView*>(window) != nullptr) {
            noteSurface(texts, *window);
            delete window;
        }
    }
    return texts;
}

Texts alertTexts()
{
    Texts texts;
    AlertDialog alert(u"Lapsa"_s, u"Use the menu bar icon to open Lapsa."_s, nullptr);
    alert.show();
    noteSurface(texts, alert);
    return texts;
}

} // namespace

class ItalianSurfacesTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        QAccessible::setActive(true);
        QCoreApplication::installTranslator(&m_toolkitTexts);
    }

    void nothingInEnglishIsSeenInItalian_data()
    {
        QTest::addColumn<std::function<Texts()>>("surface");
        QTest::addColumn<int>("leastTexts");

        QTest::newRow("the panel, its menus and its sheet") << std::function(panelTexts) << 20;
        QTest::newRow("the preferences") << std::function(preferencesTexts) << 30;
        QTest::newRow("the chooser of files") << std::function(fileChooserTexts) << 15;
        QTest::newRow("the chooser of a folder") << std::function(folderChooserTexts) << 15;
        QTest::newRow("the tray and the splash") << std::function(programTexts) << 6;
        QTest::newRow("the alert") << std::function(alertTexts) << 3;
    }

    void nothingInEnglishIsSeenInItalian()
    {
        QFETCH(const std::function<Texts()>, surface);
        QFETCH(const int, leastTexts);
        Texts english;
        {
            const Language language("en_GB.UTF-8");
            english = surface();
        }
        const Language language("it_IT.UTF-8");

        const Texts italian = surface();

        QVERIFY2(english.size() >= leastTexts, qPrintable(QStringList(english.values()).join(u'\n')));
        QStringList untranslated;
        const Texts both = Texts(italian).intersect(english);
        for (const QString& text : both) {
            if (!isSameInBoth(text)) {
                untranslated.push_back(text);
            }
        }
        untranslated.sort();
        QVERIFY2(untranslated.isEmpty(), qPrintable(untranslated.join(u'\n')));
    }

    void theTextsOfTheToolkitFollowTheLanguageAtOnce()
    {
        QLineEdit field;
        const auto menuOf = [&field] {
            Texts texts;
            const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
            noteActions(texts, menu->actions());
            return texts;
        };

        QVERIFY(menuOf().contains(u"Select All"_s));
        const Language language("it_CH.UTF-8");

        QVERIFY(menuOf().contains(u"Seleziona tutto"_s));
        QVERIFY(!menuOf().contains(u"Select All"_s));
    }

private:
    ToolkitTexts m_toolkitTexts;
};

} // namespace lapsa::test

Q_DECLARE_METATYPE(std::function<lapsa::test::Texts()>)

QTEST_MAIN(lapsa::test::ItalianSurfacesTest)
#include "ItalianSurfaces_test.moc"
