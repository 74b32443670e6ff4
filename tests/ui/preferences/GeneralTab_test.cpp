// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "Stepper.h"
#include "StoreSetup.h"
#include "SymbolTabBar.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QApplication>
#include <QRadioButton>
#include <QTest>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using BoolField = bool LapsaSettings::*;

Stepper& stepperOf(PreferencesWorld& world, const QString& editor, const QString& unit)
{
    return named<Stepper>(named<DurationEditor>(world.view, editor), unit);
}

void click(QWidget& widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
}

void clickPlus(PreferencesWorld& world, Stepper& stepper)
{
    QTest::mouseClick(&stepper, Qt::LeftButton, {}, stepper.incrementRect().center());
    world.settle();
}

void clickMinus(PreferencesWorld& world, Stepper& stepper)
{
    QTest::mouseClick(&stepper, Qt::LeftButton, {}, stepper.decrementRect().center());
    world.settle();
}

bool shows(const QWidget& view, const QString& text)
{
    const QList<TextLabel*> labels = view.findChildren<TextLabel*>();
    return std::ranges::any_of(labels, [&text](const TextLabel* label) { return label->text() == text; });
}

} // namespace

class GeneralTabTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theDefaultExpiryIsShownAsATextAndAsFields()
    {
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) { settings.defaultExpirationMinutes = 1501; });

        QVERIFY(shows(world.view, u"1d 1h 1min"_s));
        QCOMPARE(stepperOf(world, u"Default expiry"_s, u"Days"_s).value(), 1);
        QCOMPARE(stepperOf(world, u"Default expiry"_s, u"Hours"_s).value(), 1);
        QCOMPARE(stepperOf(world, u"Default expiry"_s, u"Minutes"_s).value(), 1);
    }

    void aStepOfTheDefaultExpiryIsWrittenAtOnce()
    {
        PreferencesWorld world;

        clickPlus(world, stepperOf(world, u"Default expiry"_s, u"Hours"_s));

        QCOMPARE(world.settings().defaultExpirationMinutes, 180);
        QVERIFY(shows(world.view, u"3h"_s));
    }

    void theDefaultExpiryStopsAt365Days()
    {
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) { settings.defaultExpirationMinutes = 525600 - 60; });

        QTest::keyClick(&stepperOf(world, u"Default expiry"_s, u"Days"_s), Qt::Key_End);
        world.settle();

        QCOMPARE(world.settings().defaultExpirationMinutes, 525600);
        QCOMPARE(stepperOf(world, u"Default expiry"_s, u"Days"_s).maximum(), 365);
        QCOMPARE(stepperOf(world, u"Default expiry"_s, u"Hours"_s).value(), 0);
    }

    void eachToggleWritesItsFieldAndShowsWhatWasChangedElsewhere_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("field");
        QTest::newRow("trash") << u"Use Trash instead of permanent delete"_s << 0;
        QTest::newRow("pause") << u"Pause all countdowns"_s << 1;
        QTest::newRow("panel") << u"Keep panel open until I click the icon again"_s << 2;
        QTest::newRow("warnings") << u"Notify before expiry"_s << 3;
        QTest::newRow("recovery") << u"Use recovery window before final cleanup"_s << 4;
    }

    void eachToggleWritesItsFieldAndShowsWhatWasChangedElsewhere()
    {
        QFETCH(const QString, text);
        QFETCH(const int, field);
        const std::array<BoolField, 5> fields{&LapsaSettings::useTrash, &LapsaSettings::pauseAllCountdowns,
                                              &LapsaSettings::keepPanelOpen, &LapsaSettings::enableExpiryNotifications,
                                              &LapsaSettings::useRecoveryWindow};
        const BoolField member = fields.at(static_cast<std::size_t>(field));
        PreferencesWorld world;
        auto& toggle = named<Toggle>(world.view, text);
        const bool before = world.settings().*member;
        QCOMPARE(toggle.isChecked(), before);

        click(toggle);

        QCOMPARE(world.settings().*member, !before);
        LapsaSettings expected = world.settings();
        expected.*member = before;
        world.changeElsewhere([member, before](LapsaSettings& settings) { settings.*member = before; });
        QCOMPARE(world.settings(), expected);
        QCOMPARE(toggle.isChecked(), before);
    }

    void theLeadTimeStopsAtSevenDaysAndAtOneMinute()
    {
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) { settings.notifyBeforeMinutes = 1; });
        Stepper& minutes = stepperOf(world, u"Notify before expiry"_s, u"Minutes"_s);

        clickMinus(world, minutes);

        QCOMPARE(world.settings().notifyBeforeMinutes, 1);
        QCOMPARE(minutes.value(), 1);
        QCOMPARE(stepperOf(world, u"Notify before expiry"_s, u"Days"_s).maximum(), 7);
    }

    void aLeadTimeAboveAnHourIsStoredAsAnHour()
    {
        PreferencesWorld world;

        clickPlus(world, stepperOf(world, u"Notify before expiry"_s, u"Days"_s));

        QCOMPARE(world.settings().notifyBeforeMinutes, 60);
        QCOMPARE(stepperOf(world, u"Notify before expiry"_s, u"Days"_s).value(), 0);
        QCOMPARE(stepperOf(world, u"Notify before expiry"_s, u"Hours"_s).value(), 1);
        QVERIFY(shows(world.view, u"1h"_s));
    }

    void theLeadTimeCanBeEditedWhileWarningsAreOff()
    {
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) { settings.enableExpiryNotifications = false; });

        clickPlus(world, stepperOf(world, u"Notify before expiry"_s, u"Minutes"_s));

        QCOMPARE(world.settings().notifyBeforeMinutes, 6);
    }

    void theRetentionStepperStopsAtOneAndAt168Hours()
    {
        PreferencesWorld world;
        auto& stepper = named<Stepper>(world.view, u"Recovery retention"_s);

        QTest::keyClick(&stepper, Qt::Key_End);
        clickPlus(world, stepper);
        QCOMPARE(world.settings().recoveryRetentionHours, 168);
        QVERIFY(shows(world.view, u"Recovery retention: 168 h"_s));

        QTest::keyClick(&stepper, Qt::Key_Home);
        clickMinus(world, stepper);
        QCOMPARE(world.settings().recoveryRetentionHours, 1);
        QVERIFY(shows(world.view, u"Recovery retention: 1 h"_s));
    }

    void choosingAThemeAppliesItAtOnceToTheWholeApplication()
    {
        PreferencesWorld world;

        click(named<QRadioButton>(world.view, u"Dark"_s));
        world.settle();

        QCOMPARE(world.settings().theme, LapsaTheme::Dark);
        QCOMPARE(world.appearance.forced.constLast(), std::optional(ColorScheme::Dark));
    }

    void goingBackToTheSystemThemeRemovesTheForcedOne()
    {
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });
        QVERIFY(named<QRadioButton>(world.view, u"Dark"_s).isChecked());

        click(named<QRadioButton>(world.view, u"System"_s));
        world.settle();

        QCOMPARE(world.appearance.forced.constLast(), std::optional<ColorScheme>());
    }

    void theThemesAreNamedAlikeInBothLanguagesButForTheSystemOne()
    {
        const Language language("it_IT.UTF-8");
        const PreferencesWorld world;

        QStringList names;
        for (const QRadioButton* const button : world.view.findChildren<QRadioButton*>()) {
            names.push_back(button->text());
        }

        QCOMPARE(names, QStringList({u"Sistema"_s, u"Dark"_s, u"Light"_s}));
    }

    void valuesOutOfRangeInTheSettingsFileAreShownClamped()
    {
        StoreWorld world;
        world.changeSettings([](LapsaSettings& settings) { settings.recoveryRetentionHours = 24; });
        QByteArray file = world.home.dataFile(u"settings.json"_s);
        world.stop();
        file.replace("\"recoveryRetentionHours\" : 24", "\"recoveryRetentionHours\" : 5000");
        QVERIFY(file.contains("5000"));
        world.home.writeDataFile(u"settings.json"_s, file);
        world.start();

        RecordingFolderPicker folderPicker;
        PreferencesView view(world.store(), folderPicker, world.time);
        view.show();

        QVERIFY(shows(view, u"Recovery retention: 168 h"_s));
    }

    void theKeyboardReachesTheControlsInTheOrderInWhichTheyAreRead()
    {
        PreferencesWorld world;
        world.view.findChild<SymbolTabBar*>()->setFocus();
        QStringList reached;

        for (int i = 0; i < 12; ++i) {
            pressKey(world.view, Qt::Key_Tab);
            const QWidget* const focused = QApplication::focusWidget();
            const auto* const button = qobject_cast<const QRadioButton*>(focused);
            reached.push_back(button != nullptr ? button->text() : focused->accessibleName());
        }

        QCOMPARE(reached, QStringList({u"Days"_s, u"Hours"_s, u"Minutes"_s, u"Use Trash instead of permanent delete"_s,
                                       u"Pause all countdowns"_s, u"Keep panel open until I click the icon again"_s,
                                       u"System"_s, u"Notify before expiry"_s, u"Days"_s, u"Hours"_s, u"Minutes"_s,
                                       u"Use recovery window before final cleanup"_s}));
    }

    void aControlBelowTheEdgeScrollsIntoSightWhenTheKeyboardReachesIt()
    {
        PreferencesWorld world;
        auto& last = named<Stepper>(world.view, u"Recovery retention"_s);
        QVERIFY(last.visibleRegion().isEmpty());

        named<Toggle>(world.view, u"Use recovery window before final cleanup"_s).setFocus();
        pressKey(world.view, Qt::Key_Tab);

        QVERIFY(last.hasFocus());
        QCOMPARE(last.visibleRegion().boundingRect(), last.rect());
    }

    void theArrowKeysChooseATheme()
    {
        PreferencesWorld world;
        named<QRadioButton>(world.view, u"System"_s).setFocus();

        pressKey(world.view, Qt::Key_Right);

        QCOMPARE(world.settings().theme, LapsaTheme::Dark);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::GeneralTabTest)
#include "GeneralTab_test.moc"
