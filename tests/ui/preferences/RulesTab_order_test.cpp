// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTypeRuleView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "RuleTexts.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// The preferences at the rules, with those of a first start.
class RulesWorld : public PreferencesWorld
{
public:
    RulesWorld()
    {
        view.showTab(PreferencesView::Tab::Rules);
        settle();
    }

    /// From top to bottom.
    [[nodiscard]] QList<FileTypeRuleView*> cards() const
    {
        QList<FileTypeRuleView*> views = view.findChildren<FileTypeRuleView*>();
        std::ranges::sort(views, {}, [this](const FileTypeRuleView* card) { return card->mapTo(&view, QPoint()).y(); });
        return views;
    }

    [[nodiscard]] QLineEdit& field(qsizetype card) const { return *cards().at(card)->findChild<QLineEdit*>(); }

    /// The texts of the fields, from top to bottom.
    [[nodiscard]] QStringList shown() const
    {
        QStringList texts;
        for (qsizetype card = 0; card < cards().size(); ++card) {
            texts.push_back(field(card).text());
        }
        return texts;
    }

    [[nodiscard]] QStringList stored()
    {
        QStringList texts;
        for (const LapsaFileTypeRule& rule : settings().fileTypeRules) {
            texts.push_back(rule.extensionsCSV);
        }
        return texts;
    }

    /// What the card says about earlier rules; empty if nothing is shown.
    [[nodiscard]] QString note(qsizetype card) const
    {
        for (const TextLabel* const label : cards().at(card)->findChildren<TextLabel*>()) {
            if (label->isVisible() && label->text().startsWith(u"Already"_s)) {
                return label->text();
            }
        }
        return {};
    }
};

const QString archives = u".zip,.rar,.7z"_s;
const QString programs = u".exe,.msi,.pkg,.dmg"_s;
const QString pictures = u".png,.jpg,.jpeg,.webp"_s;

} // namespace

class RulesTabOrderTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theArrowsMoveTheCardWithItsFocus()
    {
        RulesWorld world;
        world.field(0).setFocus();

        QTest::keyClick(&world.field(0), Qt::Key_Down, Qt::AltModifier);
        world.settle();

        QCOMPARE(world.stored(), (QStringList{programs, archives, pictures}));
        QCOMPARE(world.shown(), world.stored());
        QVERIFY(world.field(1).hasFocus());

        QTest::keyClick(&world.field(1), Qt::Key_Up, Qt::AltModifier);
        world.settle();
        QCOMPARE(world.stored(), (QStringList{archives, programs, pictures}));
    }

    void theFirstAndTheLastCardGoNoFurther()
    {
        RulesWorld world;

        world.field(0).setFocus();
        QTest::keyClick(&world.field(0), Qt::Key_Up, Qt::AltModifier);
        world.field(2).setFocus();
        QTest::keyClick(&world.field(2), Qt::Key_Down, Qt::AltModifier);
        world.settle();

        QCOMPARE(world.stored(), (QStringList{archives, programs, pictures}));
    }

    void tabFollowsTheCardsAsTheyStand()
    {
        RulesWorld world;
        world.field(0).setFocus();
        QTest::keyClick(&world.field(0), Qt::Key_Down, Qt::AltModifier);
        world.settle();
        world.field(0).setFocus();

        QList<QWidget*> visited;
        for (int presses = 0; presses < 30 && !world.field(2).hasFocus(); ++presses) {
            QTest::keyClick(world.view.focusWidget(), Qt::Key_Tab);
            visited.push_back(world.view.focusWidget());
        }

        QVERIFY(world.field(2).hasFocus());
        QVERIFY(visited.contains(&world.field(1)));
    }

    void aCardIsDraggedPastItsNeighbours()
    {
        RulesWorld world;
        FileTypeRuleView& card = *world.cards().first();
        const QPoint ground(3, 3);
        const auto below = [&](qsizetype other) {
            const QWidget& neighbour = *world.cards().at(other);
            return card.mapFromGlobal(neighbour.mapToGlobal(neighbour.rect().center())) + QPoint(0, 2);
        };

        QTest::mousePress(&card, Qt::LeftButton, {}, ground);
        QTest::mouseMove(&card, ground + QPoint(0, QApplication::startDragDistance()));
        QCOMPARE(world.stored(), (QStringList{archives, programs, pictures}));
        QTest::mouseMove(&card, below(1));
        world.settle();
        QCOMPARE(world.stored(), (QStringList{programs, archives, pictures}));
        QTest::mouseMove(&card, below(2));
        world.settle();
        QTest::mouseRelease(&card, Qt::LeftButton, {}, ground);

        QCOMPARE(world.stored(), (QStringList{programs, pictures, archives}));
        QCOMPARE(world.shown(), world.stored());
    }

    void escapePutsADraggedCardBack()
    {
        RulesWorld world;
        FileTypeRuleView& card = *world.cards().first();
        const QPoint ground(3, 3);
        const QWidget& last = *world.cards().last();
        const QPoint belowLast = card.mapFromGlobal(last.mapToGlobal(last.rect().center())) + QPoint(0, 2);
        QTest::mousePress(&card, Qt::LeftButton, {}, ground);
        QTest::mouseMove(&card, ground + QPoint(0, QApplication::startDragDistance()));
        QTest::mouseMove(&card, belowLast);
        world.settle();
        QVERIFY(world.stored().first() != archives);

        QTest::keyClick(world.view.windowHandle(), Qt::Key_Escape);
        world.settle();

        QCOMPARE(world.stored(), (QStringList{archives, programs, pictures}));
        QCOMPARE(world.shown(), world.stored());
        QVERIFY(world.view.isVisible());
        QTest::mouseMove(&card, belowLast);
        QCOMPARE(world.stored(), (QStringList{archives, programs, pictures}));
        QTest::mouseRelease(&card, Qt::LeftButton, {}, ground);
        QCOMPARE(QWidget::keyboardGrabber(), nullptr);
    }

    void aScreenReaderListsTheCardsAsTheyStand()
    {
        RulesWorld world;
        world.field(0).setFocus();
        QTest::keyClick(&world.field(0), Qt::Key_Down, Qt::AltModifier);
        world.settle();

        const QAccessibleInterface* const column =
            QAccessible::queryAccessibleInterface(world.cards().first()->parentWidget());
        QList<FileTypeRuleView*> listed;
        for (int child = 0; child < column->childCount(); ++child) {
            if (auto* const card = qobject_cast<FileTypeRuleView*>(column->child(child)->object())) {
                listed.push_back(card);
            }
        }

        QCOMPARE(listed, world.cards());
    }

    void aCardSaysWhichOfItsExtensionsAnEarlierRuleHas()
    {
        RulesWorld world;
        QCOMPARE(world.note(1), QString());
        const int height = world.cards().at(1)->height();

        world.field(1).selectAll();
        QTest::keyClicks(&world.field(1), u".exe, ZIP"_s);
        world.settle();
        QCOMPARE(world.note(1), u"Already in “.zip,.rar,.7z” above: .zip"_s);
        QCOMPARE(world.field(1).accessibleDescription(), world.note(1));
        QVERIFY(world.cards().at(1)->height() > height);

        world.changeElsewhere([](LapsaSettings& settings) { settings.fileTypeRules[0].enabled = false; });
        world.settle();
        QCOMPARE(world.note(1), QString());
        QCOMPARE(world.cards().at(1)->height(), height);
    }

    void aChangedTimeIsOfferedToWhatIsListed()
    {
        RulesWorld world;
        world.add(world.home.makeFile(u"a.zip"_s), 7 * 24 * 60);
        world.add(world.home.makeFile(u"b.ZIP"_s), 7 * 24 * 60);
        world.add(world.home.makeFile(u"c.zip"_s), 7 * 24 * 60);
        world.store().toggleLock(LapsaItem(world.store().items().back()));
        world.add(world.home.makeFile(u"d.txt"_s));
        world.add(world.home.makeFile(u"by hand.zip"_s), 7 * 24 * 60);
        world.store().updateExpiration(LapsaItem(world.store().items().back()), 30);
        world.settle();
        const LapsaItem locked = world.store().items().at(2);
        const LapsaItem other = world.store().items().at(3);
        const LapsaItem byHand = world.store().items().at(4);
        FileTypeRuleView& card = *world.cards().first();
        auto& offer = *card.findChildren<PushButton*>().last();
        QVERIFY(!offer.isVisible());
        const int height = card.height();

        QTest::keyClick(card.findChild<Stepper*>(), Qt::Key_Up);
        world.settle();
        QCOMPARE(world.settings().fileTypeRules[0].lifespanMinutes, 8 * 24 * 60);
        QVERIFY(offer.isVisible());
        QCOMPARE(offer.text(), u"Apply to 2 listed items"_s);

        QTest::mouseClick(&offer, Qt::LeftButton);
        world.settle();
        const TimePoint end = addingMinutes(world.time.now(), 8 * 24 * 60);
        QCOMPARE(world.store().items().at(0).expiresAt, end);
        QCOMPARE(world.store().items().at(1).expiresAt, end);
        QCOMPARE(world.store().items().at(2).expiresAt, locked.expiresAt);
        QCOMPARE(world.store().items().at(3).expiresAt, other.expiresAt);
        QCOMPARE(world.store().items().at(4).expiresAt, byHand.expiresAt);
        QVERIFY(!offer.isVisible());
        QCOMPARE(card.height(), height);
        QVERIFY(world.field(0).hasFocus());
    }

    void theOfferGoesWhenItsTabIsLeft()
    {
        RulesWorld world;
        world.add(world.home.makeFile(u"a.zip"_s), 7 * 24 * 60);
        world.settle();
        FileTypeRuleView& card = *world.cards().first();
        auto& offer = *card.findChildren<PushButton*>().last();
        QTest::keyClick(card.findChild<Stepper*>(), Qt::Key_Up);
        QCOMPARE(offer.text(), u"Apply to 1 listed item"_s);
        QVERIFY(offer.isVisible());

        world.view.showTab(PreferencesView::Tab::General);
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        QVERIFY(!offer.isVisible());
    }

    void theEarlierRulesAreNamedInTheirOrder()
    {
        const QList<LapsaFileTypeRule> rules{{.id = QUuid::createUuid(), .extensionsCSV = u".a,.b"_s},
                                             {.id = QUuid::createUuid(), .extensionsCSV = u".c .b"_s},
                                             {.id = QUuid::createUuid(), .extensionsCSV = u".c,.b,.a,.d,.b"_s}};

        QCOMPARE(ruleTexts::takenExtensions(rules, rules[0].id), QString());
        QCOMPARE(ruleTexts::takenExtensions(rules, rules[2].id),
                 u"Already in “.a,.b” above: .b, .a\nAlready in “.c .b” above: .c"_s);
        QCOMPARE(ruleTexts::takenExtensions(rules, QUuid::createUuid()), QString());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::RulesTabOrderTest)
#include "RulesTab_order_test.moc"
