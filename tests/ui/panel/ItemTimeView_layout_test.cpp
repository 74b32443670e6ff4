// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "ItemTimeView.h"
#include "PushButton.h"
#include "SheetWorld.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QApplication>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// Where everything stands in the sheet.
class ItemTimeView_layout_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void theSheetIsAsWideAsTheRowsItCovers();
    void theEditorSpreadsOverTheSheet_data();
    void theEditorSpreadsOverTheSheet();
    void atTwiceTheTextSizeTheSheetFitsThePanel();
};

namespace {

using test::SheetWorld;

} // namespace

void ItemTimeView_layout_test::theSheetIsAsWideAsTheRowsItCovers()
{
    SheetWorld world;
    world.open();

    const QPoint left = world.sheet()->mapTo(&world.panel, QPoint());
    QCOMPARE(left.x(), world.list().x());
    QCOMPARE(world.sheet()->width(), world.list().width());
}

void ItemTimeView_layout_test::theEditorSpreadsOverTheSheet_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::newRow("English") << QByteArray("en_US.UTF-8");
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8");
}

void ItemTimeView_layout_test::theEditorSpreadsOverTheSheet()
{
    QFETCH(const QByteArray, locale);
    const test::Language language(locale.constData());
    SheetWorld world(1530);
    world.open();
    const auto place = [&](const QWidget* widget) {
        return QRect(widget->mapTo(world.sheet(), QPoint()), widget->size());
    };
    const auto quick = world.sheet()->findChildren<PushButton*>();

    QList<QRect> values;
    QList<QRect> steppers;
    for (const Stepper* const stepper : world.sheet()->findChildren<Stepper*>()) {
        steppers.push_back(place(stepper));
        values.push_back(place(stepper->parentWidget()->findChildren<TextLabel*>().at(1)));
    }

    QCOMPARE(values.size(), 3);
    QCOMPARE(values.first().left(), place(quick.at(0)).left());
    QCOMPARE(steppers.last().right(), place(quick.at(3)).right());
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(values[column].width(), values.first().width());
        QCOMPARE(steppers[column].left() - values[column].right(), steppers.first().left() - values.first().right());
    }
    const int firstGap = values[1].left() - steppers[0].right();
    QVERIFY(firstGap > steppers[0].left() - values[0].right()); // a stepper belongs to the value before it
    QVERIFY(qAbs(values[2].left() - steppers[1].right() - firstGap) <= 1);
}

void ItemTimeView_layout_test::atTwiceTheTextSizeTheSheetFitsThePanel()
{
    QFont font = QApplication::font();
    font.setPointSizeF(20);
    QApplication::setFont(font);
    SheetWorld world(364 * 1440 + 23 * 60 + 59);

    world.open();

    QVERIFY(world.panel.rect().contains(world.sheet()->geometry()));
    for (const QWidget* const child : world.sheet()->findChildren<QWidget*>()) {
        if (child->isVisible()) {
            const QRect place(child->mapTo(world.sheet(), QPoint()), child->size());
            QVERIFY2(world.sheet()->rect().contains(place), child->metaObject()->className());
        }
    }
}

QTEST_MAIN(ItemTimeView_layout_test)
#include "ItemTimeView_layout_test.moc"
