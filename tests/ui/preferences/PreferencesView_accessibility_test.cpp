// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "FileTypeRuleView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "Stepper.h"
#include "Toggle.h"

#include <QAccessible>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using BoolField = bool LapsaSettings::*;

QAccessibleInterface& accessibleOf(QWidget& control)
{
    QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(&control);
    if (found == nullptr) {
        qFatal("a screen reader does not find \"%s\"", qPrintable(control.accessibleName()));
    }
    return *found;
}

/// Does one of a control's actions as a screen reader does it. What comes of it may come on a later turn.
void doAccessibly(QWidget& control, const QString& action)
{
    accessibleOf(control).actionInterface()->doAction(action);
}

/// The name of the group that a control belongs to; empty where there is none.
QString groupOf(QWidget& control)
{
    const QAccessibleInterface* above = accessibleOf(control).parent();
    while (above != nullptr && above->role() != QAccessible::Grouping) {
        above = above->parent();
    }
    return above != nullptr ? above->text(QAccessible::Name) : QString();
}

void addActions()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("toggle") << QAccessibleActionInterface::toggleAction();
    QTest::newRow("press") << QAccessibleActionInterface::pressAction();
}

} // namespace

/// What a screen reader finds in the preferences, and what it can do there.
class PreferencesViewAccessibilityTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void eachSwitchWritesItsSetting_data() { addActions(); }

    void eachSwitchWritesItsSetting()
    {
        QFETCH(const QString, action);
        PreferencesWorld world;
        LapsaSettings expected = world.settings();

        for (const auto& [text, field] :
             {std::pair(u"Use Trash instead of permanent delete"_s, &LapsaSettings::useTrash),
              std::pair(u"Pause all countdowns"_s, &LapsaSettings::pauseAllCountdowns),
              std::pair(u"Keep panel open until I click the icon again"_s, &LapsaSettings::keepPanelOpen),
              std::pair(u"Notify before expiry"_s, &LapsaSettings::enableExpiryNotifications),
              std::pair(u"Use recovery window before final cleanup"_s, &LapsaSettings::useRecoveryWindow)}) {
            doAccessibly(named<Toggle>(world.view, text), action);

            expected.*field = !(expected.*field);
            QTRY_COMPARE(world.settings(), expected);
        }
    }

    void eachThemeIsWritten_data() { addActions(); }

    void eachThemeIsWritten()
    {
        QFETCH(const QString, action);
        PreferencesWorld world;

        for (const auto& [name, theme] :
             {std::pair(u"Dark"_s, LapsaTheme::Dark), std::pair(u"Light"_s, LapsaTheme::Light),
              std::pair(u"System"_s, LapsaTheme::System)}) {
            doAccessibly(named<QRadioButton>(world.view, name), action);

            QTRY_COMPARE(world.settings().theme, theme);
            world.settle();
        }
    }

    void theSwitchOfARuleWritesIt_data() { addActions(); }

    void theSwitchOfARuleWritesIt()
    {
        QFETCH(const QString, action);
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        QList<LapsaFileTypeRule> expected = world.settings().fileTypeRules;
        expected[1].enabled = false;

        doAccessibly(named<Toggle>(world.view, expected[1].extensionsCSV), action);

        QTRY_COMPARE(world.settings().fileTypeRules, expected);
    }

    void eachSwitchOfAFolderWritesItsField_data() { addActions(); }

    void eachSwitchOfAFolderWritesItsField()
    {
        QFETCH(const QString, action);
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.settle();
        LapsaAutoCleanFolderRule expected = world.settings().autoCleanFolders.constFirst();

        for (const auto& [text, field] :
             {std::pair(u"/srv/scans"_s, &LapsaAutoCleanFolderRule::enabled),
              std::pair(u"Include existing files"_s, &LapsaAutoCleanFolderRule::includeExistingFiles),
              std::pair(u"Apply file type rules"_s, &LapsaAutoCleanFolderRule::applyFileTypeRules)}) {
            doAccessibly(named<Toggle>(world.view, text), action);

            expected.*field = !(expected.*field);
            QTRY_COMPARE(world.settings().autoCleanFolders, QList{expected});
        }
    }

    void eachFieldSaysOfWhatItIsByTheNameOfItsGroup()
    {
        PreferencesWorld world;
        world.store().addFileTypeRule();
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.settle();

        QStringList groups;
        for (Stepper* const days : world.view.findChildren<Stepper*>()) {
            if (days->accessibleName() == u"Days"_s) {
                groups.push_back(groupOf(*days));
            }
        }

        groups.sort();
        QCOMPARE(groups, QStringList({u".exe,.msi,.pkg,.dmg"_s, u".png,.jpg,.jpeg,.webp"_s, u".zip,.rar,.7z"_s,
                                      u"/srv/scans"_s, u"Default expiry"_s, u"New rule"_s, u"Notify before expiry"_s}));
        QCOMPARE(groupOf(named<QRadioButton>(world.view, u"Dark"_s)), u"Theme"_s);
    }

    void aGroupFollowsTheExtensionsOfItsRule()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);

        world.changeElsewhere([](LapsaSettings& settings) { settings.fileTypeRules = {{.extensionsCSV = u".log"_s}}; });

        QCOMPARE(groupOf(*world.view.findChild<FileTypeRuleView*>()->findChild<Stepper*>()), u".log"_s);
    }

    void oneStepOfAFieldIsOne()
    {
        PreferencesWorld world;
        Stepper& days = *named<DurationEditor>(world.view, u"Default expiry"_s).findChild<Stepper*>();
        QAccessibleValueInterface* const value = accessibleOf(days).valueInterface();
        QVERIFY(value != nullptr);

        QCOMPARE(value->minimumStepSize().toDouble(), 1.0);
        value->setCurrentValue(value->currentValue().toDouble() + value->minimumStepSize().toDouble());

        QCOMPARE(world.settings().defaultExpirationMinutes, 1440 + 120);
    }

    void aControlThatOnlyFollowsTheSettingsWritesNothing()
    {
        PreferencesWorld world;
        const QSignalSpy writes(&world.store().settingsStore(), &SettingsStore::settingsChanged);

        world.changeElsewhere([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });
        world.changeElsewhere([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });

        QVERIFY(named<Toggle>(world.view, u"Pause all countdowns"_s).isChecked());
        QVERIFY(named<QRadioButton>(world.view, u"Dark"_s).isChecked());
        QCOMPARE(writes.size(), 2);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PreferencesViewAccessibilityTest)
#include "PreferencesView_accessibility_test.moc"
