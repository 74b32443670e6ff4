// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "ControllerWorld.h"
#include "PanelWorld.h"
#include "PreferencesView.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class PanelControllerWindowsTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void withoutAButtonThereIsAnAlertInPlaceOfThePanel()
    {
        ControllerWorld world;

        world.controller.toggle(nullptr, std::nullopt);

        QVERIFY(!world.open());
        const AlertDialog* const alert = world.controller.alert();
        QVERIFY(alert != nullptr && alert->isVisible() && alert->isModal());
        QCOMPARE(alert->windowTitle(), u"Lapsa"_s);
        QStringList texts;
        for (const TextLabel* const label : alert->findChildren<TextLabel*>()) {
            texts.push_back(label->text());
        }
        QCOMPARE(texts, QStringList({u"Lapsa"_s, u"Use the menu bar icon to open Lapsa."_s}));
    }

    void theAlertGoesAwayByReturnOrEscape_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }

    void theAlertGoesAwayByReturnOrEscape()
    {
        QFETCH(const int, key);
        ControllerWorld world;
        world.controller.show(nullptr);
        QVERIFY(QTest::qWaitForWindowActive(world.controller.alert()));

        QTest::keyClick(world.controller.alert()->windowHandle(), Qt::Key(key));

        QTRY_VERIFY(world.controller.alert() == nullptr);
    }

    void twoAlertsAreOne()
    {
        ControllerWorld world;
        world.controller.show(nullptr);
        const AlertDialog* const first = world.controller.alert();

        world.controller.show(nullptr);

        QCOMPARE(world.controller.alert(), first);
    }

    void theGearOpensThePreferences()
    {
        ControllerWorld world;
        world.show();

        QTest::mouseClick(&named<SymbolButton>(world.controller.popover()->content(), u"Preferences"_s),
                          Qt::LeftButton);

        QVERIFY(world.controller.preferencesWindow() != nullptr);
        QVERIFY(world.controller.preferencesWindow()->isVisible());
    }

    void thePreferencesWindowIsTitledClosableAndOfFixedSize()
    {
        const Language language("it_IT.UTF-8");
        ControllerWorld world;

        world.controller.showPreferences();

        const QWidget& window = *world.controller.preferencesWindow();
        QCOMPARE(window.windowTitle(), u"Preferenze"_s);
        QCOMPARE(window.minimumSize(), QSize(620, 620));
        QCOMPARE(window.maximumSize(), QSize(620, 620));
        QVERIFY(window.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QVERIFY(window.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
        QVERIFY(!window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        // The window manager's frame moves it a little.
        constexpr int frame = 40;
        QVERIFY(qAbs(window.geometry().center().x() - screen.center().x()) <= frame);
        QVERIFY(qAbs(window.geometry().center().y() - screen.center().y()) <= frame);
    }

    void preferencesAskedForTwiceAreOneWindowThemedEachTime()
    {
        ControllerWorld world;
        world.controller.showPreferences();
        const QWidget* const first = world.controller.preferencesWindow();
        world.controller.preferencesWindow()->close();
        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });
        world.appearance.forced.clear();

        world.controller.showPreferences();

        QCOMPARE(world.controller.preferencesWindow(), first);
        QVERIFY(first->isVisible());
        QVERIFY(!world.appearance.forced.isEmpty());
        QCOMPARE(world.appearance.forced.constFirst(), std::optional(ColorScheme::Dark));
    }

    void minimisedPreferencesComeBack()
    {
        ControllerWorld world;
        world.controller.showPreferences();
        world.controller.preferencesWindow()->showMinimized();

        world.controller.showPreferences();

        QVERIFY(!world.controller.preferencesWindow()->isMinimized());
    }

    void aThemeChangeReachesTheOpenWindowsAtOnce()
    {
        ControllerWorld world;
        world.controller.showPreferences();
        world.appearance.forced.clear();

        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });

        QVERIFY(world.appearance.forced.contains(std::optional(ColorScheme::Dark)));
    }

    void withoutAWindowThereIsNothingToTheme()
    {
        ControllerWorld world;
        world.appearance.forced.clear();

        world.controller.applyTheme(nullptr);

        QVERIFY(world.appearance.forced.isEmpty());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PanelControllerWindowsTest)
#include "PanelController_windows_test.moc"
