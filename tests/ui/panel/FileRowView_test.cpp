// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileIconView.h"
#include "FileRowView.h"
#include "PanelWorld.h"
#include "RowIconButton.h"
#include "RowLook.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class FileRowView_test final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theButtonsStandInTheirOrderWithTheirTips();
    void everythingStandsAtItsPlace();
    void theGroundRunsFromWhiteToAccent();
    void anyNameIsShownAsPlainTextOnOneLine_data();
    void anyNameIsShownAsPlainTextOnOneLine();
    void aNameThatFitsHasNoToolTipAndALongOneHas();
    void aScreenReaderHearsNameAndRemainingTime();
    void atTwiceTheTextSizeNothingIsCutOff();
    void italianTextsAreItalian();
};

namespace {

using test::PanelWorld;

ElidedLabel& label(const QWidget& row, qsizetype index)
{
    return *row.findChildren<ElidedLabel*>().at(index);
}

} // namespace

void FileRowView_test::init()
{
    PanelWorld::setUpApplication();
}

void FileRowView_test::theButtonsStandInTheirOrderWithTheirTips()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);

    QStringList tips;
    QStringList symbols;
    int x = 0;
    for (const RowIconButton* const button : world.row(0).findChildren<RowIconButton*>()) {
        tips.push_back(button->toolTip());
        symbols.push_back(button->systemName());
        QCOMPARE(button->accessibleName(), button->toolTip());
        QVERIFY(button->x() > x);
        x = button->x();
    }
    QCOMPARE(tips, (QStringList{u"Change timer"_s, u"Lock"_s, u"Remove from list"_s, u"Delete now"_s}));
    QCOMPARE(symbols, (QStringList{u"timer"_s, u"lock.open"_s, u"xmark"_s, u"trash"_s}));
}

void FileRowView_test::everythingStandsAtItsPlace()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    const FileRowView& row = world.row(0);

    const QRect icon = row.findChild<FileIconView*>()->geometry();
    const QRect name = label(row, 0).geometry();
    const QRect remaining = label(row, 1).geometry();
    const auto buttons = row.findChildren<RowIconButton*>();
    QCOMPARE(icon.size(), QSize(24, 24));
    QCOMPARE(icon.x(), 12);
    QCOMPARE(name.x(), icon.right() + 1 + 10);
    QCOMPARE(remaining.y() - name.bottom() - 1, 3);
    QCOMPARE(buttons.at(0)->x(), name.right() + 1 + 10);
    QCOMPARE(buttons.at(1)->x() - buttons.at(0)->geometry().right() - 1, 6);
    QCOMPARE(row.width() - buttons.at(3)->geometry().right() - 1, 12);
    QVERIFY(name.y() >= 12);
    QVERIFY(row.height() - remaining.bottom() - 1 >= 12);
    QCOMPARE(label(row, 0).font().pixelSize(), 13);
    QCOMPARE(label(row, 0).font().weight(), QFont::DemiBold);
    QCOMPARE(label(row, 1).font().pixelSize(), 12);
}

void FileRowView_test::theGroundRunsFromWhiteToAccent()
{
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const QPalette palette = themePalette(scheme);

        const auto stops = rowLook::groundFor(QRectF(0, 0, 382, 58), palette).stops();

        QCOMPARE(stops.first().second, withOpacity(Qt::white, 0.1));
        QCOMPARE(stops.last().second, withOpacity(themeColor(ColorRole::Accent, palette), 0.035));
    }
}

void FileRowView_test::anyNameIsShownAsPlainTextOnOneLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("markup") << u"<b>bold<img src=x>.html"_s;
    QTest::newRow("a line break") << u"first\nsecond.txt"_s;
    QTest::newRow("a control character") << u"bell\u0007.txt"_s;
    QTest::newRow("from right to left") << u"تقرير الربع الأول.pdf"_s;
    QTest::newRow("255 bytes") << QString(251, u'n') + u".txt"_s;
}

void FileRowView_test::anyNameIsShownAsPlainTextOnOneLine()
{
    QFETCH(const QString, name);
    PanelWorld world;
    world.addItem(u"plain.txt"_s);
    const int height = world.row(0).height();

    world.addItem(name);

    const ElidedLabel& shown = label(world.row(1), 0);
    QCOMPARE(shown.textFormat(), Qt::PlainText);
    QVERIFY(!shown.text().contains(u'\n'));
    QCOMPARE(shown.geometry(), label(world.row(0), 0).geometry());
    QCOMPARE(world.row(1).height(), height);
    QCOMPARE(world.row(1).accessibleName(), name);
}

void FileRowView_test::aNameThatFitsHasNoToolTipAndALongOneHas()
{
    PanelWorld world;
    const QString longName = QString(200, u'n') + u".txt"_s;
    world.addItem(u"short.txt"_s);
    world.addItem(longName);

    QCOMPARE(label(world.row(0), 0).toolTip(), QString());
    QCOMPARE(label(world.row(1), 0).toolTip(), longName);
}

void FileRowView_test::aScreenReaderHearsNameAndRemainingTime()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s, 90);

    QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(&world.row(0));
    QCOMPARE(row->role(), QAccessible::ListItem);
    QCOMPARE(row->text(QAccessible::Name), u"a.txt"_s);
    QCOMPARE(row->text(QAccessible::Description), u"1h 30min left"_s);
    QCOMPARE(row->parent()->role(), QAccessible::List);
    QCOMPARE(row->parent()->childCount(), 1);
}

void FileRowView_test::atTwiceTheTextSizeNothingIsCutOff()
{
    QFont font = QApplication::font();
    font.setPointSizeF(20);
    QApplication::setFont(font);
    PanelWorld world;
    world.addItem(u"a.txt"_s, 364 * 1440 + 23 * 60 + 59);
    const FileRowView& row = world.row(0);

    const ElidedLabel& remaining = label(row, 1);
    QCOMPARE(remaining.font().pixelSize(), 24);
    QVERIFY(remaining.sizeHint().width() <= remaining.width());
    for (const QWidget* const child : row.findChildren<QWidget*>()) {
        QVERIFY(row.rect().contains(child->geometry()));
    }
}

void FileRowView_test::italianTextsAreItalian()
{
    const test::Language italian("it_IT.UTF-8");
    PanelWorld world;
    world.addItem(u"a.txt"_s, 90);

    QCOMPARE(label(world.row(0), 1).text(), u"1h 30min rimanenti"_s);
    for (const QString& tip : {u"Cambia scadenza"_s, u"Blocca"_s, u"Rimuovi dalla lista"_s, u"Elimina ora"_s}) {
        QCOMPARE(world.button(0, tip).toolTip(), tip);
    }

    QTest::mouseClick(&world.button(0, u"Blocca"_s), Qt::LeftButton);
    PanelWorld::settle();
    QCOMPARE(label(world.row(0), 1).text(), u"bloccato"_s);
    QCOMPARE(world.row(0).accessibleDescription(), u"bloccato"_s);
    QCOMPARE(world.button(0, u"Sblocca"_s).toolTip(), u"Sblocca"_s);
    QCOMPARE(world.row(0).findChildren<RowIconButton*>().at(1)->accessibleName(), u"Sblocca"_s);
    QTest::mouseClick(&world.button(0, u"Sblocca"_s), Qt::LeftButton);
    PanelWorld::settle();
    QCOMPARE(label(world.row(0), 1).text(), u"1h 30min rimanenti"_s);
}

QTEST_MAIN(FileRowView_test)
#include "FileRowView_test.moc"
