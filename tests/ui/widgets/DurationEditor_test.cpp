// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "PanelWorld.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QApplication>
#include <QImage>
#include <QTest>

#include <limits>
#include <tuple>

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
    void theColumnsStandAtTheirDistances();
    void theSteppersAreNamedByTheirUnit();
    void theSteppersGrowWithTheText_data();
    void theSteppersGrowWithTheText();
    void everythingGrowsWhenTheTextDoes();
    void aHeldHalfRepeatsAndTheWheelDoesNothing();
};

namespace {

constexpr DurationEditor::Bounds year{1, 525600};

struct Editor
{
    explicit Editor(std::int64_t start, const DurationEditor::Bounds& bounds = year)
        : minutes(start)
        , editor({.read = [this] { return minutes; },
                  .write =
                      [this](std::int64_t value) {
                          minutes = value;
                          ++writes;
                      }},
                 bounds)
    {
        editor.show();
        editor.activateWindow();
        std::ignore = QTest::qWaitForWindowActive(&editor);
    }

    [[nodiscard]] Stepper& stepper(const QString& name) { return test::named<Stepper>(editor, name); }

    void up(const QString& name)
    {
        QTest::mouseClick(&stepper(name), Qt::LeftButton, {}, stepper(name).incrementRect().center());
    }

    void down(const QString& name)
    {
        QTest::mouseClick(&stepper(name), Qt::LeftButton, {}, stepper(name).decrementRect().center());
    }

    [[nodiscard]] QStringList texts() const
    {
        QStringList texts;
        for (const TextLabel* const label : editor.findChildren<TextLabel*>()) {
            texts.push_back(label->text());
        }
        return texts;
    }

    std::int64_t minutes;
    int writes = 0;
    DurationEditor editor;
};

/// Another text size of the desktop, until it goes.
class TextSize final
{
public:
    explicit TextSize(double points) { setPoints(points); }

    TextSize(const TextSize&) = delete;
    TextSize& operator=(const TextSize&) = delete;

    ~TextSize() { setPoints(10); }

private:
    static void setPoints(double points)
    {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }
};

/// How wide the plus sign of a stepper is drawn.
int widthOfSign(Stepper& stepper)
{
    QImage image(stepper.size(), QImage::Format_ARGB32);
    stepper.render(&image);
    const QRect half = stepper.incrementRect().adjusted(4, 0, -4, 0);
    int width = 0;
    for (int x = half.left(); x <= half.right(); ++x) {
        width += image.pixelColor(x, image.height() / 2).lightness() < 128 ? 1 : 0;
    }
    return width;
}

} // namespace

void DurationEditor_test::zeroIsShownAsOneMinuteAndNotRewritten()
{
    const Editor editor(0);

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
    Editor editor(0);

    editor.up(unit);

    QCOMPARE(editor.minutes, written);
}

void DurationEditor_test::steppingTheLastMinuteDownJumpsBackToOne()
{
    Editor editor(1);

    editor.down(u"Minutes"_s);

    QCOMPARE(editor.minutes, 1);
    QCOMPARE(editor.texts().last(), u"1 min"_s);
    QCOMPARE(editor.stepper(u"Minutes"_s).value(), 1);
}

void DurationEditor_test::theDaysStopAt365AndTheRestFallsAway()
{
    Editor editor(364 * 1440 + 23 * 60 + 59);

    editor.up(u"Days"_s);
    editor.up(u"Days"_s);

    QCOMPARE(editor.minutes, 525600);
    QCOMPARE(editor.texts(), (QStringList{u"Days"_s, u"365 d"_s, u"Hours"_s, u"0 h"_s, u"Minutes"_s, u"0 min"_s}));
    QCOMPARE(editor.stepper(u"Days"_s).maximum(), 365);
}

void DurationEditor_test::hoursCannotBeSteppedFrom23ToTheNextDay()
{
    Editor editor(23 * 60);

    editor.up(u"Hours"_s);

    QCOMPARE(editor.minutes, 23 * 60);
    QCOMPARE(editor.writes, 0);
}

void DurationEditor_test::theWarningsLeadTimeStopsAtSevenDays()
{
    Editor editor(10079, {1, 10080});

    editor.up(u"Days"_s);

    QCOMPARE(editor.minutes, 10080);
    QCOMPARE(editor.stepper(u"Days"_s).maximum(), 7);
}

void DurationEditor_test::aBoundBelowADayLeavesNoDaysToStep()
{
    Editor editor(90, {1, 1439});

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
    Editor editor(60);

    editor.minutes = 2 * 1440 + 5;
    editor.editor.refresh();

    QCOMPARE(editor.texts(), (QStringList{u"Days"_s, u"2 d"_s, u"Hours"_s, u"0 h"_s, u"Minutes"_s, u"5 min"_s}));
    QCOMPARE(editor.writes, 0);
}

void DurationEditor_test::titlesAndMarksFollowTheLanguage()
{
    const test::Language italian("it_IT.UTF-8");

    const Editor editor(1500);

    QCOMPARE(editor.texts(), (QStringList{u"Giorni"_s, u"1 g"_s, u"Ore"_s, u"1 h"_s, u"Minuti"_s, u"0 min"_s}));
}

void DurationEditor_test::theColumnsStandAtTheirDistances()
{
    Editor editor(1500);
    editor.editor.adjustSize();
    QTest::qWait(0);

    const QWidget* const days = editor.stepper(u"Days"_s).parentWidget();
    const QWidget* const hours = editor.stepper(u"Hours"_s).parentWidget();
    const auto lines = days->findChildren<TextLabel*>();
    QCOMPARE(hours->x() - days->geometry().right() - 1, 8);
    QVERIFY(days->width() >= 82);
    QVERIFY(lines.at(1)->width() >= 36);
    QCOMPARE(editor.stepper(u"Days"_s).x() - lines.at(1)->geometry().right() - 1, 3);
    QCOMPARE(lines.at(0)->x(), 0);
}

void DurationEditor_test::theSteppersAreNamedByTheirUnit()
{
    Editor editor(60);

    QCOMPARE(editor.stepper(u"Days"_s).accessibleName(), u"Days"_s);
    QCOMPARE(editor.stepper(u"Hours"_s).accessibleName(), u"Hours"_s);
    QCOMPARE(editor.stepper(u"Minutes"_s).accessibleName(), u"Minutes"_s);
}

void DurationEditor_test::theSteppersGrowWithTheText_data()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("sign");
    QTest::newRow("usual text") << 10.0 << QSize(44, 24) << 7;
    QTest::newRow("text at 150 %") << 15.0 << QSize(66, 36) << 11;
    QTest::newRow("text at 200 %") << 20.0 << QSize(88, 48) << 14;
}

void DurationEditor_test::theSteppersGrowWithTheText()
{
    QFETCH(const double, points);
    QFETCH(const QSize, size);
    QFETCH(const int, sign);
    const TextSize text(points);

    Editor editor(1500);
    Stepper& days = editor.stepper(u"Days"_s);

    QCOMPARE(days.size(), size);
    QCOMPARE(days.incrementRect().united(days.decrementRect()).size(), size);
    QVERIFY2(widthOfSign(days) >= sign, qPrintable(QString::number(widthOfSign(days))));
    QVERIFY(editor.editor.rect().contains(QRect(days.mapTo(&editor.editor, QPoint()), days.size())));
}

void DurationEditor_test::everythingGrowsWhenTheTextDoes()
{
    Editor small(1500);
    const QSize usual = small.editor.sizeHint();
    const TextSize text(20);
    Editor large(1500);

    // Only within its event loop does the toolkit tell the widgets by itself.
    for (QWidget* const widget : QApplication::allWidgets()) {
        QEvent event(QEvent::ApplicationFontChange);
        QApplication::sendEvent(widget, &event);
    }
    QApplication::processEvents();

    QVERIFY(small.editor.sizeHint().height() > usual.height());
    QCOMPARE(small.editor.sizeHint(), large.editor.sizeHint());
}

void DurationEditor_test::aHeldHalfRepeatsAndTheWheelDoesNothing()
{
    Editor editor(60);
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
