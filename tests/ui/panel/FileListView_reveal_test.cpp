// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "Drops.h"
#include "FileChooser.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "Motion.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "RowLook.h"
#include "ScrollFade.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <cstdlib>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// What the user adds is seen, wherever on the list it lands.
class FileListView_reveal_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void aDroppedFileIsScrolledToAndLightsUp();
    void aChosenFileIsScrolledToAndLightsUp();
    void aFileThatIsAddedAgainIsScrolledToInItsPlace();
    void whatIsSeenAlreadyLightsUpWithoutScrolling();
    void ofMoreFilesThanFitTheFirstIsSeen();
    void whatAWatchedFolderBringsIsNeitherScrolledToNorLit();
    void theLightGoesWithItsItem();
    void theLightFades();
    void theLightStaysAndEndsWhereNothingMayMove();
    void theKeyboardGoesOnFromWhatWasAdded();
    void textKeepsItsContrastOnALitRow_data();
    void textKeepsItsContrastOnALitRow();
    void aLitRowLooksLit();
};

namespace {

using test::PanelWorld;

/// More than the list can show.
struct LongList : PanelWorld
{
    explicit LongList(int count = 30)
    {
        for (int index = 0; index < count; ++index) {
            add(home.makeFile(u"old %1.txt"_s.arg(index)));
        }
        settle();
    }

    void drop(const QStringList& names)
    {
        QStringList paths;
        for (const QString& name : names) {
            paths.push_back(home.makeFile(name));
        }
        test::dropFiles(*panel.findChild<DropZone*>(), paths);
    }

    /// The rows that are seen whole, by their files.
    [[nodiscard]] QStringList seen()
    {
        QStringList names;
        for (const FileRowView* const row : list().visibleRows()) {
            if (list().rect().contains(row->geometry())) {
                names.push_back(row->item().displayName);
            }
        }
        return names;
    }

    [[nodiscard]] QStringList lit()
    {
        QStringList names;
        for (const FileRowView* const row : list().visibleRows()) {
            if (row->light() > 0) {
                names.push_back(row->item().displayName);
            }
        }
        return names;
    }

    /// Animations as a desktop shows them; there are none without a screen.
    static bool canMove()
    {
        motion::setAllowedByDesktop(true);
        return motion::allowed();
    }
};

} // namespace

void FileListView_reveal_test::aDroppedFileIsScrolledToAndLightsUp()
{
    LongList world;
    QCOMPARE(world.list().scrollBar().value(), 0);

    world.drop({u"new.txt"_s});

    QCOMPARE(world.seen().last(), u"new.txt"_s);
    QCOMPARE(world.lit(), QStringList{u"new.txt"_s});
}

void FileListView_reveal_test::aChosenFileIsScrolledToAndLightsUp()
{
    LongList world;
    world.home.makeFile(u"chosen/new.txt"_s);
    QTest::mouseClick(world.panel.findChild<DropZone*>(), Qt::LeftButton);
    FileChooser* const chooser = world.panel.chooser();
    auto* const field = chooser->findChild<QLineEdit*>();
    field->setText(world.home.path(u"chosen"_s));
    QTest::keyClick(field, Qt::Key_Return);
    auto* const view = chooser->findChild<QTreeView*>();
    QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 1);
    view->selectionModel()->select(view->model()->index(0, 0, view->rootIndex()),
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);

    test::named<PushButton>(*chooser, u"Add"_s).click();
    PanelWorld::settle();

    QCOMPARE(world.seen().last(), u"new.txt"_s);
    QCOMPARE(world.lit(), QStringList{u"new.txt"_s});
}

void FileListView_reveal_test::aFileThatIsAddedAgainIsScrolledToInItsPlace()
{
    LongList world;

    world.drop({u"old 15.txt"_s});

    QCOMPARE(world.lit(), QStringList{u"old 15.txt"_s});
    const FileRowView& row = test::named<FileRowView>(world.list(), u"old 15.txt"_s);
    const QRect clear = world.list().rect().adjusted(0, ScrollFade::extent, 0, -ScrollFade::extent);
    QVERIFY(clear.contains(row.geometry())); // not under the list's soft edges
}

void FileListView_reveal_test::whatIsSeenAlreadyLightsUpWithoutScrolling()
{
    LongList world;
    world.list().scrollBar().setValue(7);

    world.drop({u"old 1.txt"_s});

    QCOMPARE(world.list().scrollBar().value(), 7);
    QCOMPARE(world.lit(), QStringList{u"old 1.txt"_s});
}

void FileListView_reveal_test::ofMoreFilesThanFitTheFirstIsSeen()
{
    LongList world;
    QStringList names;
    for (int index = 10; index < 30; ++index) {
        names.push_back(u"new %1.txt"_s.arg(index));
    }

    world.drop(names);

    QCOMPARE(world.seen().first(), names.first());
    QCOMPARE(world.lit().first(), names.first());
    QVERIFY(std::ranges::includes(world.lit(), world.seen()));
}

void FileListView_reveal_test::whatAWatchedFolderBringsIsNeitherScrolledToNorLit()
{
    LongList world;
    const QString folder = world.home.makeFolder(u"watched"_s);
    world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder));
    world.changeSettings(
        [](LapsaSettings& settings) { settings.autoCleanFolders.first().includeExistingFiles = true; });
    world.home.makeFile(u"watched/new.txt"_s);

    world.store().scanAutoCleanFolders();
    PanelWorld::settle();

    QVERIFY(world.listedNames().contains(u"new.txt"_s));
    QCOMPARE(world.list().scrollBar().value(), 0);
    QCOMPARE(world.lit(), QStringList());
}

void FileListView_reveal_test::theLightGoesWithItsItem()
{
    LongList world(2);
    world.drop({u"new.txt"_s});

    world.store().removeFromList(world.store().items().first());
    PanelWorld::settle();
    QCOMPARE(world.lit(), QStringList{u"new.txt"_s});
    world.store().removeFromList(world.store().items().last());
    PanelWorld::settle();

    QCOMPARE(world.lit(), QStringList());
}

void FileListView_reveal_test::theLightFades()
{
    if (!LongList::canMove()) {
        QSKIP("without a screen nothing moves"); // the same test runs on a display as well
    }
    LongList world(2);

    world.drop({u"new.txt"_s});
    const FileRowView& row = world.row(2);
    QCOMPARE(row.light(), 1.0);
    QTRY_VERIFY(row.light() < 1 && row.light() > 0);

    QTRY_COMPARE(row.light(), 0.0);
}

void FileListView_reveal_test::theLightStaysAndEndsWhereNothingMayMove()
{
    LongList world(2);

    world.drop({u"new.txt"_s});
    const FileRowView& row = world.row(2);
    QCOMPARE(row.light(), 1.0);
    bool moved = false;
    QTRY_VERIFY((moved = moved || (row.light() > 0 && row.light() < 1), row.light() == 0));

    QVERIFY(!moved);
}

void FileListView_reveal_test::theKeyboardGoesOnFromWhatWasAdded()
{
    LongList world;

    world.drop({u"new.txt"_s});
    QTest::keyClick(world.panel.windowHandle(), Qt::Key_Tab);

    const auto* const row = qobject_cast<FileRowView*>(QApplication::focusWidget());
    QVERIFY(row != nullptr);
    QCOMPARE(row->item().displayName, u"new.txt"_s);
}

void FileListView_reveal_test::textKeepsItsContrastOnALitRow_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::newRow("light") << ColorScheme::Light;
    QTest::newRow("dark") << ColorScheme::Dark;
}

void FileListView_reveal_test::textKeepsItsContrastOnALitRow()
{
    QFETCH(const ColorScheme, scheme);
    const QPalette palette = themePalette(scheme);
    QImage row(1, FileRowView::rowHeight(), QImage::Format_RGB32);
    row.fill(rowLook::baseFor(palette));
    QPainter painter(&row);
    painter.fillRect(row.rect(), rowLook::groundFor(row.rect(), palette));
    painter.fillRect(row.rect(), rowLook::lightFor(palette, 1));
    painter.end();

    for (int y = 0; y < row.height(); ++y) {
        for (const ColorRole role : {ColorRole::Primary, ColorRole::Secondary, ColorRole::Notice}) {
            const double contrast = contrastRatio(themeColor(role, palette), row.pixelColor(0, y));
            QVERIFY2(contrast >= textContrast, qPrintable(QString::number(contrast)));
        }
    }
}

void FileListView_reveal_test::aLitRowLooksLit()
{
    LongList world(2);
    const QColor dark = world.row(1).grab().toImage().pixelColor(30, 5);

    world.drop({u"old 1.txt"_s});

    const QColor lit = world.row(1).grab().toImage().pixelColor(30, 5);
    const QColor expected = blended(rowLook::lightFor(world.panel.palette(), 1), dark);
    QVERIFY(std::abs(lit.red() - expected.red()) <= 2);
    QVERIFY(lit != dark);
}

QTEST_MAIN(FileListView_reveal_test)
#include "FileListView_reveal_test.moc"
