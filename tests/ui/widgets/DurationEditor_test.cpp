// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "PanelWorld.h"
#include "ShownEditor.h"
#include "Stepper.h"

#include <QApplication>
#include <QTest>

#include <limits>

using namespace lapsa;
using namespace Qt::StringLiterals;

class DurationEditor_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void zeroIsShownAsOneMinuteAndNotRewritten();
    void steppingAnyUnitFromZeroWritesAtLeastOneMinute_data();
    void steppingAnyUnitFromZeroWritesAtLeastOneMinute();
    void steppingTheLastMinuteDownJumpsBackToOne();
    void theDaysStopAt365AndTheRestFallsAway();
    void hoursCannotBeSteppedFrom23ToTheNextDay();
    void theWarningsLeadTimeStopsAtSevenDays();
    void aBoundBelowADayLeavesNoDaysToStep();
    void theLowerBoundWinsWhereBoundsAreTheWrongWayRound();
    void theFieldsShowAValueThatChangedElsewhere();
    void titlesAndMarksFollowTheLanguage();
    void theSteppersAreNamedByTheirUnit();
    void aHeldHalfRepeatsAndTheWheelDoesNothing();
};

namespace {

using test::ShownEditor;

constexpr DurationEditor::Bounds year = ShownEditor::year;

} // namespace

void DurationEditor_test::zeroIsShownAsOneMinuteAndNotRewritten()
{
    const ShownEditor editor(0);

    QCOMPARE(editor.texts(), (QStringList{u"Days"_s, u"0 d"_s, u"Hours"_s, u"0 h"_s, u"Minutes"_s, u"1 min"_s}));
    QCOMPARE(editor.minutes, 0);
    QCOMPARE(editor.writes, 0);
}

void DurationEditor_test::steppingAnyUnitFromZeroWritesAtLeastOneMinute_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<qint64>("written");
    QTest::newRow("days") << u"Days"_s << qint64(1441);
    QTest::newRow("hours") << u"Hours"_s << qint64(61);
    QTest::newRow("minutes") << u"Minutes"_s << qint64(2);
}

void DurationEditor_test::steppingAnyUnitFromZeroWritesAtLeastOneMinute()
{
    QFETCH(const QString, unit);
    QFETCH(const qint64, written);
    ShownEditor editor(0);

    editor.up(unit);

    QCOMPARE(editor.minutes, written);
}

void DurationEditor_test::steppingTheLastMinuteDownJumpsBackToOne()
{
    ShownEditor editor(1);

    editor.down(u"Minutes"_s);

    QCOMPARE(editor.minutes, 1);
    QCOMPARE(editor.texts().last(), u"1 min"_s);
    QCOMPARE(editor.stepper(u"Minutes"_s).value(), 1);
}

void DurationEditor_test::theDaysStopAt365AndTheRestFallsAway()
{
    ShownEditor editor(364 * 1440 + 23 * 60 + 59);

    editor.up(u"Days"_s);
    editor.up(u"Days"_s);

    QCOMPARE(editor.minutes, 525600);
    QCOMPARE(editor.texts(), (QStringList{u"Days"_s, u"365 d"_s, u"Hours"_s, u"0 h"_s, u"Minutes"_s, u"0 min"_s}));
    QCOMPARE(editor.stepper(u"Days"_s).maximum(), 365);
}

void DurationEditor_test::hoursCannotBeSteppedFrom23ToTheNextDay()
{
    ShownEditor editor(23 * 60);

    editor.up(u"Hours"_s);

    QCOMPARE(editor.minutes, 23 * 60);
    QCOMPARE(editor.writes, 0);
}

void DurationEditor_test::theWarningsLeadTimeStopsAtSevenDays()
{
    ShownEditor editor(10079, {1, 10080});

    editor.up(u"Days"_s);

    QCOMPARE(editor.minutes, 10080);
    QCOMPARE(editor.stepper(u"Days"_s).maximum(), 7);
}

void DurationEditor_test::aBoundBelowADayLeavesNoDaysToStep()
{
    ShownEditor editor(90, {1, 1439});

    QCOMPARE(editor.stepper(u"Days"_s).maximum(), 0);
}

void DurationEditor_test::theLowerBoundWinsWhereBoundsAreTheWrongWayRound()
{
    QCOMPARE(DurationEditor::clampedTotal(5, {60, 10}), 60);
    QCOMPARE(DurationEditor::clampedTotal(std::numeric_limits<std::int64_t>::max(), year), 525600);
    QCOMPARE(DurationEditor::totalOf({.days = -3, .hours = 99, .minutes = 99}, year), 23 * 60 + 59);
}

void DurationEditor_test::theFieldsShowAValueThatChangedElsewhere()
{
    ShownEditor editor(60);

    editor.minutes = 2 * 1440 + 5;
    editor.editor.refresh();

    QCOMPARE(editor.texts(), (QStringList{u"Days"_s, u"2 d"_s, u"Hours"_s, u"0 h"_s, u"Minutes"_s, u"5 min"_s}));
    QCOMPARE(editor.writes, 0);
}

void DurationEditor_test::titlesAndMarksFollowTheLanguage()
{
    const test::Language italian("it_IT.UTF-8");

    const ShownEditor editor(1500);

    QCOMPARE(editor.texts(), (QStringList{u"Giorni"_s, u"1 g"_s, u"Ore"_s, u"1 h"_s, u"Minuti"_s, u"0 min"_s}));
}

void DurationEditor_test::theSteppersAreNamedByTheirUnit()
{
    ShownEditor editor(60);

    QCOMPARE(editor.stepper(u"Days"_s).accessibleName(), u"Days"_s);
    QCOMPARE(editor.stepper(u"Hours"_s).accessibleName(), u"Hours"_s);
    QCOMPARE(editor.stepper(u"Minutes"_s).accessibleName(), u"Minutes"_s);
}

void DurationEditor_test::aHeldHalfRepeatsAndTheWheelDoesNothing()
{
    ShownEditor editor(60);
    Stepper& hours = editor.stepper(u"Hours"_s);

    QCursor::setPos(hours.mapToGlobal(hours.incrementRect().center()));
    QTest::mouseMove(&hours, hours.incrementRect().center());
    QTest::mousePress(&hours, Qt::LeftButton, {}, hours.incrementRect().center());
    QTRY_VERIFY(editor.minutes >= 4 * 60);
    QTest::mouseRelease(&hours, Qt::LeftButton, {}, hours.incrementRect().center());
    const std::int64_t after = editor.minutes;
    QWheelEvent wheel({5, 5}, hours.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&hours, &wheel);

    QCOMPARE(editor.minutes, after);
}

QTEST_MAIN(DurationEditor_test)
#include "DurationEditor_test.moc"
