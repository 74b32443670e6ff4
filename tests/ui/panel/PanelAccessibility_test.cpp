// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileRowView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "RowIconButton.h"

#include <QAccessible>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What a screen reader is told of the panel, its sheet and the preferences.
class PanelAccessibility_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        test::PanelWorld::setUpApplication();
        QAccessible::setActive(true);
    }

    void theSheetIsAModalDialogWithItsTitle();
    void saveIsTheDefaultButton_data();
    void saveIsTheDefaultButton();
    void savePressedByAScreenReaderSaves();
    void noLayerIsToldBetweenAWindowAndItsControls();
};

namespace {

using test::PanelWorld;

QAccessibleInterface& told(QWidget& widget)
{
    return *QAccessible::queryAccessibleInterface(&widget);
}

void forEach(QAccessibleInterface& parent, const std::function<void(QAccessibleInterface&)>& visit)
{
    visit(parent);
    for (int index = 0; index < parent.childCount(); ++index) {
        forEach(*parent.child(index), visit);
    }
}

} // namespace

void PanelAccessibility_test::theSheetIsAModalDialogWithItsTitle()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QTest::mouseClick(&world.button(0, u"Change timer"_s), Qt::LeftButton);
    int dialogs = 0;

    forEach(told(world.panel), [&](QAccessibleInterface& child) {
        if (child.role() == QAccessible::Dialog) {
            ++dialogs;
            QCOMPARE(child.text(QAccessible::Name), u"File timer"_s);
            QVERIFY(child.state().modal);
            QCOMPARE(child.child(0)->role(), QAccessible::Client); // the title is not said twice
        }
    });

    QCOMPARE(dialogs, 1);
}

void PanelAccessibility_test::saveIsTheDefaultButton_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"Save"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"Salva"_s;
}

void PanelAccessibility_test::saveIsTheDefaultButton()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, text);
    const test::Language language(locale.constData());
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QTest::mouseClick(world.row(0).findChildren<RowIconButton*>().first(), Qt::LeftButton);
    QStringList defaults;

    forEach(told(world.panel), [&](QAccessibleInterface& child) {
        if (child.role() == QAccessible::Button && child.state().defaultButton) {
            defaults.push_back(child.text(QAccessible::Name));
        }
    });

    QCOMPARE(defaults, QStringList{text});
}

void PanelAccessibility_test::savePressedByAScreenReaderSaves()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);
    QTest::mouseClick(&world.button(0, u"Change timer"_s), Qt::LeftButton);
    test::named<PushButton>(world.panel, u"7d"_s).click();

    told(test::named<PushButton>(world.panel, u"Save"_s))
        .actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());

    QTRY_VERIFY(!world.panel.showingSheet());
    QCOMPARE(world.item(item.path).expiresAt - world.time.now(), 10080min);
}

void PanelAccessibility_test::noLayerIsToldBetweenAWindowAndItsControls()
{
    PanelWorld panel;
    test::PreferencesWorld preferences;

    for (QWidget* const window : {static_cast<QWidget*>(&panel.panel), static_cast<QWidget*>(&preferences.view)}) {
        QCOMPARE(told(*window).role(), QAccessible::Window);
        forEach(told(*window), [](QAccessibleInterface& child) {
            QVERIFY(child.role() != QAccessible::LayeredPane);
            QVERIFY(child.role() != QAccessible::Grouping || !child.text(QAccessible::Name).isEmpty());
        });
    }
}

QTEST_MAIN(PanelAccessibility_test)
#include "PanelAccessibility_test.moc"
