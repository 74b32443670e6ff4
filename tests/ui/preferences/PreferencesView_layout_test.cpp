// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Card.h"
#include "DurationEditor.h"
#include "FileTypeRuleView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "ScrollFade.h"
#include "Stepper.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// Where the text of a heading begins, in the window.
QPoint placeOfHeading(const PreferencesWorld& world, const QString& text)
{
    for (const TextLabel* const label : world.view.findChildren<TextLabel*>()) {
        if (label->isVisible() && label->text() == text) {
            return label->mapTo(&world.view, label->contentsRect().topLeft());
        }
    }
    qFatal("there is no heading \"%s\"", qPrintable(text));
}

/// The two ends of a switch's line, in the window.
std::pair<int, int> endsOf(const PreferencesWorld& world, const QWidget& widget)
{
    const int left = widget.mapTo(&world.view, QPoint()).x();
    return {left, left + widget.width()};
}

QScrollArea& areaOf(const QWidget& inside)
{
    for (QWidget* above = inside.parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (auto* const area = qobject_cast<QScrollArea*>(above)) {
            return *area;
        }
    }
    qFatal("this does not scroll");
}

bool fadesAtTheBottom(const QScrollArea& area)
{
    const QList<ScrollFade*> fades = area.findChildren<ScrollFade*>();
    return std::ranges::any_of(fades, [&area](const ScrollFade* fade) {
        return fade->isVisible() && fade->mapTo(&area, fade->rect().bottomLeft()).y() == area.height() - 1;
    });
}

double centreOf(const PreferencesWorld& world, const QWidget& widget)
{
    return widget.mapTo(&world.view, QPoint()).y() + widget.height() / 2.0;
}

/// What is shown with less height than it needs.
QStringList squeezed(const QWidget& view)
{
    QStringList names;
    for (const QWidget* const widget : view.findChildren<QWidget*>()) {
        const int needed =
            widget->hasHeightForWidth() ? widget->heightForWidth(widget->width()) : widget->minimumSizeHint().height();
        if (widget->isVisible() && widget->height() < needed) {
            names.push_back(u"%1 \"%2\" %3 < %4"_s
                                .arg(QLatin1StringView(widget->metaObject()->className()), widget->accessibleName())
                                .arg(widget->height())
                                .arg(needed));
        }
    }
    return names;
}

} // namespace

/// Where things stand in the preferences.
class PreferencesViewLayoutTest final : public QObject
{
    Q_OBJECT

private slots:

    void init() { PanelWorld::setUpApplication(); }

    void cleanup() { QApplication::setLayoutDirection(Qt::LeftToRight); }

    void theHeadingsOfAllTabsStandInOnePlace_data() { addTextSizes(); }

    void theHeadingsOfAllTabsStandInOnePlace()
    {
        setTextSize();
        PreferencesWorld world;
        const QPoint place = placeOfHeading(world, u"General"_s);

        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        QCOMPARE(placeOfHeading(world, u"File type rules"_s), place);
        world.view.showTab(PreferencesView::Tab::Folders);
        world.settle();
        QCOMPARE(placeOfHeading(world, u"Auto-clean folders"_s), place);
    }

    void theHeadingsStayInOnePlaceWhenTheTextGrows()
    {
        PreferencesWorld world;
        const QPoint before = placeOfHeading(world, u"General"_s);

        setPointSize(20);
        // Only within its event loop does the toolkit tell the widgets by itself.
        for (QWidget* const widget : QApplication::allWidgets()) {
            QEvent event(QEvent::ApplicationFontChange);
            QApplication::sendEvent(widget, &event);
        }
        world.settle();
        QTRY_VERIFY(placeOfHeading(world, u"General"_s) != before);
        const QPoint place = placeOfHeading(world, u"General"_s);
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        QCOMPARE(placeOfHeading(world, u"File type rules"_s), place);
    }

    void theSwitchesOfAllTabsStandInOneColumnWithAndWithoutAScrollBar_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("from the left") << Qt::LeftToRight;
        QTest::newRow("from the right") << Qt::RightToLeft;
    }

    void theSwitchesOfAllTabsStandInOneColumnWithAndWithoutAScrollBar()
    {
        QFETCH(const Qt::LayoutDirection, direction);
        QApplication::setLayoutDirection(direction);
        PreferencesWorld world;
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        const auto ends = endsOf(world, named<Toggle>(world.view, u"Pause all countdowns"_s));

        world.view.showTab(PreferencesView::Tab::Rules);
        world.changeElsewhere([](LapsaSettings& settings) { settings.fileTypeRules.resize(1); });
        QCOMPARE(endsOf(world, *world.view.findChild<FileTypeRuleView*>()->findChild<Toggle*>()), ends);
        world.changeElsewhere([](LapsaSettings& settings) { settings.fileTypeRules.resize(9); });
        QTRY_VERIFY(areaOf(*world.view.findChild<FileTypeRuleView*>()).verticalScrollBar()->maximum() > 0);
        QCOMPARE(endsOf(world, *world.view.findChild<FileTypeRuleView*>()->findChild<Toggle*>()), ends);
        world.view.showTab(PreferencesView::Tab::Folders);
        world.settle();
        QCOMPARE(endsOf(world, named<Toggle>(world.view, u"/srv/scans"_s)), ends);
    }

    void theScrollBarStandsInTheMarginAndScrolls_data()
    {
        theSwitchesOfAllTabsStandInOneColumnWithAndWithoutAScrollBar_data();
    }

    void theScrollBarStandsInTheMarginAndScrolls()
    {
        QFETCH(const Qt::LayoutDirection, direction);
        QApplication::setLayoutDirection(direction);
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Rules);
        world.changeElsewhere([](LapsaSettings& settings) { settings.fileTypeRules.resize(9); });
        const auto* const card = world.view.findChild<FileTypeRuleView*>();
        const QScrollArea& area = areaOf(*card);
        QTRY_VERIFY(visibleBar(area) != nullptr);
        QScrollBar* const bar = visibleBar(area);

        const QRect place(bar->mapTo(&world.view, QPoint()), bar->size());
        QVERIFY(world.view.rect().contains(place));
        QVERIFY(!place.intersects(QRect(card->mapTo(&world.view, QPoint()), card->size())));
        bar->setValue(bar->maximum());
        QCOMPARE(area.widget()->y(), area.viewport()->height() - area.widget()->height());
        QTest::keyClick(bar, Qt::Key_Home);
        QCOMPARE(area.widget()->y(), 0);
    }

    void whatLiesBelowTheEdgeRunsOutSoftly()
    {
        PreferencesWorld world;
        const auto& last = named<Stepper>(world.view, u"Recovery retention"_s);
        QScrollArea& area = areaOf(last);
        QVERIFY(fadesAtTheBottom(area));

        area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());

        QVERIFY(!fadesAtTheBottom(area));
    }

    void sectionsStandSixteenPointsApart()
    {
        const PreferencesWorld world;
        const QList<FormSection*> sections = world.view.findChildren<FormSection*>();

        QCOMPARE(sections.size(), 3);
        QCOMPARE(sections[1]->y() - sections[0]->geometry().bottom() - 1, 16);
        QCOMPARE(sections[2]->y() - sections[1]->geometry().bottom() - 1, 16);
    }

    void everyCardHasItsRoomAtOnce_data() { addTextSizes(); }

    void everyCardHasItsRoomAtOnce()
    {
        setTextSize();
        PreferencesWorld world;
        world.view.showTab(PreferencesView::Tab::Folders);
        world.settle();

        for (const QString& folder : {u"/srv/scans"_s, u"/srv/faxes"_s}) {
            world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder));
        }
        world.settle();

        QCOMPARE(squeezed(world.view).join(u"; "_s), QString());
    }

    void removingStandsOnTheLineOfTheSteppers()
    {
        PreferencesWorld world;
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(u"/srv/scans"_s));
        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();
        const auto& card = *world.view.findChild<FileTypeRuleView*>();
        QCOMPARE(centreOf(world, named<PushButton>(card, u"Remove rule"_s)),
                 centreOf(world, named<Stepper>(card, u"Days"_s)));

        world.view.showTab(PreferencesView::Tab::Folders);
        world.settle();
        const auto& editor = named<DurationEditor>(world.view, u"/srv/scans"_s);
        QCOMPARE(centreOf(world, named<PushButton>(world.view, u"Remove folder"_s)),
                 centreOf(world, named<Stepper>(editor, u"Days"_s)));
    }

    void whereTheLineIsTooShortRemovingStandsBelow()
    {
        const Language language("it_IT.UTF-8");
        setPointSize(26);
        PreferencesWorld world;

        world.view.showTab(PreferencesView::Tab::Rules);
        world.settle();

        const auto& card = *world.view.findChild<FileTypeRuleView*>();
        const auto& remove = named<PushButton>(card, u"Rimuovi regola"_s);
        const auto& editor = *card.findChild<DurationEditor*>();
        QVERIFY(remove.mapTo(&card, QPoint()).y() >= editor.mapTo(&card, editor.rect().bottomLeft()).y());
        QVERIFY(card.rect().contains(QRect(remove.mapTo(&card, QPoint()), remove.size())));
    }

private:
    static QScrollBar* visibleBar(const QScrollArea& area)
    {
        const QList<QScrollBar*> bars = area.findChildren<QScrollBar*>();
        const auto found = std::ranges::find_if(bars, &QScrollBar::isVisible);
        return found != bars.end() ? *found : nullptr;
    }

    static void setPointSize(double points)
    {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }

    static void addTextSizes()
    {
        QTest::addColumn<double>("points");
        QTest::newRow("usual text") << 10.0;
        QTest::newRow("text at 150 %") << 15.0;
        QTest::newRow("text at 200 %") << 20.0;
    }

    static void setTextSize()
    {
        QFETCH(const double, points);
        setPointSize(points);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PreferencesViewLayoutTest)
#include "PreferencesView_layout_test.moc"
