// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "SymbolTabBar.h"
#include "TextLabel.h"
#include "TextSize.h"

#include <QApplication>
#include <QFontMetrics>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class PreferencesViewTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theViewIs620PointsWideAndHigh()
    {
        const PreferencesWorld world;

        QCOMPARE(world.view.size(), QSize(620, 620));
    }

    void theTabsComeInTheirOrderInBothLanguages_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QStringList>("tabs");
        QTest::newRow("English") << QByteArray("en_US.UTF-8")
                                 << QStringList{u"General"_s, u"File type rules"_s, u"Folders"_s};
        QTest::newRow("Italian") << QByteArray("it_IT.UTF-8")
                                 << QStringList{u"Generale"_s, u"Regole per tipo file"_s, u"Cartelle"_s};
    }

    void theTabsComeInTheirOrderInBothLanguages()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const QStringList, tabs);
        const Language language(locale.constData());
        const PreferencesWorld world;
        const auto* const bar = world.view.findChild<SymbolTabBar*>();

        QStringList shown;
        for (int index = 0; index < bar->count(); ++index) {
            shown.push_back(bar->tabText(index));
        }

        QCOMPARE(shown, tabs);
    }

    void theThemeIsAppliedWhenTheViewIsShownFirst()
    {
        StoreWorld world;
        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Light; });
        RecordingFolderPicker folderPicker;
        PreferencesView view(world.store(), folderPicker, world.time);
        world.appearance.forced.clear();

        view.show();

        QCOMPARE(world.appearance.forced, QList{std::optional(ColorScheme::Light)});
    }

    void theKeysThatCloseAWindowCloseIt_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("Escape") << int(Qt::Key_Escape) << int(Qt::NoModifier);
        QTest::newRow("Ctrl+W") << int(Qt::Key_W) << int(Qt::ControlModifier);
    }

    void theKeysThatCloseAWindowCloseIt()
    {
        QFETCH(const int, key);
        QFETCH(const int, modifiers);
        PreferencesWorld world;

        pressKey(world.view, Qt::Key(key), Qt::KeyboardModifiers(modifiers));

        QVERIFY(!world.view.isVisible());
    }

    void atTwiceTheTextSizeEveryTextHasItsRoom()
    {
        const TextSize large(20);
        const PreferencesWorld world;
        for (const auto tab : {PreferencesView::Tab::General, PreferencesView::Tab::Rules}) {
            const_cast<PreferencesView&>(world.view).showTab(tab);
            QApplication::processEvents();
            for (const TextLabel* const label : world.view.findChildren<TextLabel*>()) {
                if (label->isVisible()) {
                    QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
                    const QRect place(label->mapTo(&world.view, QPoint()), label->size());
                    QVERIFY2(place.left() >= 0 && place.right() < 620, qPrintable(label->text()));
                }
            }
        }
    }

    void atTwiceTheTextSizeTheTabsReadInFullInBothLanguages_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::newRow("English") << QByteArray("en_US.UTF-8");
        QTest::newRow("Italian") << QByteArray("it_IT.UTF-8");
    }

    void atTwiceTheTextSizeTheTabsReadInFullInBothLanguages()
    {
        QFETCH(const QByteArray, locale);
        const Language language(locale.constData());
        const TextSize large(20);
        const PreferencesWorld world;
        const auto* const bar = world.view.findChild<SymbolTabBar*>();
        for (int index = 0; index < bar->count(); ++index) {
            const int needed = QFontMetrics(bar->font()).horizontalAdvance(bar->tabText(index)) + 23;
            QVERIFY2(bar->tabRect(index).width() >= needed, qPrintable(bar->tabText(index)));
        }
        QVERIFY(world.view.rect().contains(bar->geometry()));
    }

    void readFromTheRightTheSwitchesStandOnTheLeft()
    {
        PreferencesWorld world;
        auto& row = named<QWidget>(world.view, u"Recovery retention"_s);
        const int fromLeft = row.mapTo(&world.view, QPoint()).x();

        world.view.setLayoutDirection(Qt::RightToLeft);
        world.settle();

        QCOMPARE(row.mapTo(&world.view, QPoint(row.width(), 0)).x(), 620 - fromLeft);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PreferencesViewTest)
#include "PreferencesView_test.moc"
