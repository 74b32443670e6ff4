// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTypeRuleView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "Stepper.h"
#include "Toggle.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// The cards, from top to bottom.
QList<FileTypeRuleView*> cards(const PreferencesWorld& world)
{
    QList<FileTypeRuleView*> views = world.view.findChildren<FileTypeRuleView*>();
    std::ranges::sort(views, {},
                      [&world](const FileTypeRuleView* view) { return view->mapTo(&world.view, QPoint()).y(); });
    return views;
}

Toggle& toggleOf(const FileTypeRuleView& card)
{
    return *card.findChild<Toggle*>();
}

QLineEdit& fieldOf(const FileTypeRuleView& card)
{
    return named<QLineEdit>(card, u"Extensions, e.g. .pdf,.png"_s);
}

void click(PreferencesWorld& world, QWidget& widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
    world.settle();
}

} // namespace

class RulesTabTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void eachRuleHasItsCardInListOrder()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        QStringList labels;
        for (const FileTypeRuleView* const card : cards(world)) {
            labels.push_back(toggleOf(*card).accessibleName());
        }

        QCOMPARE(labels, QStringList({u".zip,.rar,.7z"_s, u".exe,.msi,.pkg,.dmg"_s, u".png,.jpg,.jpeg,.webp"_s}));
    }

    void typingWritesTheRuleAtOnceAndNamesIt()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        FileTypeRuleView& card = *cards(world).constFirst();

        fieldOf(card).selectAll();
        QTest::keyClicks(&fieldOf(card), u".iso"_s);

        QCOMPARE(world.settings().fileTypeRules.constFirst().extensionsCSV, u".iso"_s);
        world.settle();
        QCOMPARE(toggleOf(card).accessibleName(), u".iso"_s);
    }

    void aRuleWhoseTextIsClearedIsANewRuleAndShowsThePlaceholder()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        FileTypeRuleView& card = *cards(world).constFirst();

        fieldOf(card).selectAll();
        QTest::keyClick(&fieldOf(card), Qt::Key_Delete);
        world.settle();

        QCOMPARE(world.settings().fileTypeRules.constFirst().extensionsCSV, QString());
        QCOMPARE(toggleOf(card).accessibleName(), u"New rule"_s);
        QCOMPARE(fieldOf(card).text(), QString());
        QCOMPARE(fieldOf(card).placeholderText(), u"Extensions, e.g. .pdf,.png"_s);
    }

    void aRefreshDoesNotDisturbWhatIsBeingTyped()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        QLineEdit& field = fieldOf(*cards(world).constFirst());
        field.setFocus();
        field.setCursorPosition(0);
        QTest::keyClicks(&field, u".a,"_s);

        world.changeElsewhere([](LapsaSettings& settings) { settings.useTrash = false; });
        QTest::keyClicks(&field, u".b,"_s);

        QCOMPARE(field.text(), u".a,.b,.zip,.rar,.7z"_s);
        QCOMPARE(field.cursorPosition(), 6);
        QVERIFY(field.isUndoAvailable());
    }

    void aTextChangedElsewhereIsShown()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.fileTypeRules.first().extensionsCSV = u".tmp"_s; });

        QCOMPARE(fieldOf(*cards(world).constFirst()).text(), u".tmp"_s);
    }

    void switchingARuleOffWritesOnlyThatRule()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        QList<LapsaFileTypeRule> expected = world.settings().fileTypeRules;
        expected[1].enabled = false;

        click(world, toggleOf(*cards(world).at(1)));

        QCOMPARE(world.settings().fileTypeRules, expected);
    }

    void theLifespanOfARuleStopsAt365Days()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        auto& days = named<Stepper>(*cards(world).constFirst(), u"Days"_s);

        QTest::keyClick(&days, Qt::Key_End);
        world.settle();

        QCOMPARE(days.maximum(), 365);
        QCOMPARE(world.settings().fileTypeRules.constFirst().lifespanMinutes, 525600);
    }

    void addingARuleOpensItsFieldForTyping()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        click(world, named<PushButton>(world.view, u"Add rule"_s));
        QTest::keyClicks(QApplication::focusWidget(), u".log"_s);
        world.settle();

        QCOMPARE(world.settings().fileTypeRules.size(), 4);
        QCOMPARE(world.settings().fileTypeRules.constLast().extensionsCSV, u".log"_s);
        QCOMPARE(world.settings().fileTypeRules.constLast().lifespanMinutes, 120);
        QLineEdit& field = fieldOf(*cards(world).constLast());
        QTRY_COMPARE(field.visibleRegion().boundingRect(), field.rect());
    }

    void removingARuleTakesThatRuleAlone()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        QList<LapsaFileTypeRule> expected = world.settings().fileTypeRules;
        expected.removeAt(1);
        const QPointer<FileTypeRuleView> other = cards(world).constFirst();

        click(world, named<PushButton>(*cards(world).at(1), u"Remove rule"_s));

        QCOMPARE(world.settings().fileTypeRules, expected);
        QCOMPARE(cards(world).size(), 2);
        QCOMPARE(cards(world).constFirst(), other);
    }

    void afterARemovalByKeyboardTheNextPressRemovesNothing()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        named<PushButton>(*cards(world).constFirst(), u"Remove rule"_s).setFocus();

        pressKey(world.view, Qt::Key_Delete);
        pressKey(world.view, Qt::Key_Return);
        world.settle();

        QCOMPARE(world.settings().fileTypeRules.size(), 2);
        QVERIFY(named<PushButton>(world.view, u"Add rule"_s).hasFocus());
    }

    void aRuleRemovedWhileItsFieldHasFocusIsSafe()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        FileTypeRuleView& card = *cards(world).constFirst();
        QLineEdit& field = fieldOf(card);
        field.setFocus();
        const QList<LapsaFileTypeRule> others = world.settings().fileTypeRules.sliced(1);

        world.store().removeFileTypeRule(card.id());
        QTest::keyClicks(&field, u"x"_s); // the card is still there
        card.refresh();
        QCOMPARE(toggleOf(card).accessibleName(), u"New rule"_s);
        QVERIFY(toggleOf(card).isChecked());
        QCOMPARE(named<Stepper>(card, u"Hours"_s).value(), 2);
        QTest::keyClick(&named<Stepper>(card, u"Days"_s), Qt::Key_Up);
        world.settle();
        pressKey(world.view, Qt::Key_Tab);

        QCOMPARE(world.settings().fileTypeRules, others);
        QCOMPARE(cards(world).size(), 2);
    }

    void cardsFollowAnOrderChangedElsewhere()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        world.changeElsewhere([](LapsaSettings& settings) { settings.fileTypeRules.swapItemsAt(0, 2); });

        QCOMPARE(toggleOf(*cards(world).constFirst()).accessibleName(), u".png,.jpg,.jpeg,.webp"_s);
    }

    void rulesWithOneIdAllHaveACard()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);

        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.fileTypeRules.push_back(settings.fileTypeRules.constFirst()); });

        QCOMPARE(cards(world).size(), 4);
    }

    void namesThatLookLikeMarkupAreShownAsTheyAre()
    {
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);

        world.changeElsewhere(
            [](LapsaSettings& settings) { settings.fileTypeRules.first().extensionsCSV = u"<b>&amp;\u202Egpj"_s; });

        QCOMPARE(toggleOf(*cards(world).constFirst()).accessibleName(), u"<b>&amp;\uFFFDgpj"_s);
        QCOMPARE(world.view.width(), 620);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::RulesTabTest)
#include "RulesTab_test.moc"
