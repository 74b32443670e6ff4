// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "ElidedLabel.h"
#include "FileTree.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "RecoveryFoot.h"
#include "RecoveryWorld.h"
#include "StoreSetup.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

using Button = RecoveryRowLayout::Button;

/// Answers the question before a deletion.
void answer(RecoveryWorld& world, bool yes)
{
    QVERIFY(world.view.question() != nullptr);
    yes ? world.view.question()->accept() : world.view.question()->reject();
    world.settle();
}

} // namespace

class RecoveryView_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theNewestIsOnTopWithWhereItWasAndUntilWhenItStays()
    {
        RecoveryWorld world;
        world.parkFiles({u"Downloads/first.txt"_s, u"second.txt"_s});
        world.show();

        QCOMPARE(world.rows(), (QStringList{u"second.txt"_s, u"first.txt"_s}));
        const QString said = world.list().model()->index(1, 0).data(Qt::AccessibleDescriptionRole).toString();
        QVERIFY2(said.startsWith(u"from "_s) && said.contains(u"Downloads, removed in 23h 58min, 5 bytes"_s),
                 qPrintable(said));
        QCOMPARE(world.count(), u"2 files, 10 bytes"_s);
    }

    void largeTextLeavesTheCountWhole()
    {
        const QFont before = QApplication::font();
        const auto restore = qScopeGuard([&] { QApplication::setFont(before); });
        QFont large = before;
        large.setPointSize(22);
        QApplication::setFont(large);
        RecoveryWorld world;
        world.parkFiles({u"a.txt"_s, u"b.txt"_s});
        world.show();

        const int height = world.list().height();
        world.press(Qt::Key_A, Qt::ControlModifier);
        world.settle();

        auto& foot = *world.view.findChild<RecoveryFoot*>();
        auto& count = *foot.findChild<ElidedLabel*>();
        QCOMPARE(count.text(), u"2 selected, 10 bytes"_s);
        QVERIFY2(count.width() >= count.sizeHint().width(), qPrintable(QString::number(count.width())));
        QVERIFY(!count.geometry().intersects(world.button(u"Put back"_s).geometry()));
        QCOMPARE(world.list().height(), height);
    }

    void aButtonPutsItsFileBack()
    {
        RecoveryWorld world;
        world.parkFiles({u"a.txt"_s, u"b.txt"_s});
        world.show();

        world.click(1, Button::PutBack);

        QCOMPARE(contentOf(world.home.path(u"a.txt"_s)), QByteArray("bytes"));
        QCOMPARE(world.rows(), QStringList{u"b.txt"_s});
        QVERIFY2(world.message().startsWith(u"a.txt is back in "_s), qPrintable(world.message()));
        QVERIFY(world.selected().isEmpty());
    }

    void aFileWhoseNameIsTakenIsNamed()
    {
        RecoveryWorld world;
        world.parkFiles({u"a.txt"_s});
        world.home.makeFile(u"a.txt"_s, "another");
        world.show();

        world.click(0, Button::PutBack);

        QVERIFY2(world.message().endsWith(u" as a-1.txt."_s), qPrintable(world.message()));
        QCOMPARE(contentOf(world.home.path(u"a.txt"_s)), QByteArray("another"));
    }

    void aFailureIsOneSentenceAndTheRowStays()
    {
        RecoveryWorld world;
        world.parkFiles({u"folder/a.txt"_s});
        QVERIFY(QDir().rmdir(world.home.path(u"folder"_s)));
        world.home.makeFile(u"folder"_s);
        world.show();

        world.click(0, Button::PutBack);

        QVERIFY2(world.message().startsWith(u"a.txt stays in Recovery: a file is in the way of "_s),
                 qPrintable(world.message()));
        QCOMPARE(world.rows(), QStringList{u"a.txt"_s});
    }

    void deletingAsksOnce()
    {
        RecoveryWorld world;
        world.parkFiles({u"a.txt"_s});
        world.show();

        world.click(0, Button::Delete);
        answer(world, false);
        QCOMPARE(world.home.names(recoveryFolder), QStringList{u"a.txt"_s});

        world.click(0, Button::Delete);
        answer(world, true);
        QVERIFY(world.home.names(recoveryFolder).isEmpty());
        QVERIFY(world.rows().isEmpty());
        QVERIFY(!QFile::exists(world.home.path(u"a.txt"_s)));
    }

    void returnDoesNotSayYesToTheQuestion()
    {
        RecoveryWorld world;
        world.parkFiles({u"a.txt"_s});
        world.show();
        world.click(0);

        world.press(Qt::Key_Delete);
        QVERIFY(world.view.question() != nullptr);
        QTest::keyClick(world.view.question(), Qt::Key_Return);
        world.settle();

        QCOMPARE(world.rows(), QStringList{u"a.txt"_s});
    }

    void severalRowsArePutBackAtOnce_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Return") << true;
        QTest::newRow("the button at the foot") << false;
    }

    void severalRowsArePutBackAtOnce()
    {
        QFETCH(const bool, byKey);
        RecoveryWorld world;
        world.parkFiles({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        world.show();
        QVERIFY(!world.button(u"Put back"_s).isVisible());

        world.click(0);
        world.click(2, Qt::ShiftModifier);
        world.click(1, Qt::ControlModifier);
        QCOMPARE(world.selected(), (QStringList{u"d"_s, u"b"_s}));
        QCOMPARE(world.count(), u"2 selected, 10 bytes"_s);
        if (byKey) {
            world.press(Qt::Key_Return);
        } else {
            QTest::mouseClick(&world.button(u"Put back"_s), Qt::LeftButton);
            world.settle();
        }

        QCOMPARE(world.rows(), (QStringList{u"c"_s, u"a"_s}));
        QCOMPARE(world.message(), u"2 files are back where they were."_s);
        QVERIFY(QFile::exists(world.home.path(u"d"_s)) && QFile::exists(world.home.path(u"b"_s)));
    }

    void theFirstArrowSelectsTheFirstRow()
    {
        RecoveryWorld world;
        world.parkFiles({u"a"_s, u"b"_s});
        world.show();

        world.press(Qt::Key_Down);
        QCOMPARE(world.selected(), QStringList{u"b"_s});
        world.press(Qt::Key_Down);
        QCOMPARE(world.selected(), QStringList{u"a"_s});
    }

    void everythingIsSelectedByItsKey()
    {
        RecoveryWorld world;
        world.parkFiles({u"a"_s, u"b"_s, u"c"_s});
        world.show();

        world.press(Qt::Key_A, Qt::ControlModifier);

        QCOMPARE(world.selected().size(), 3);
    }

    void theSelectionStaysWhenOtherRowsComeAndGo()
    {
        RecoveryWorld world;
        world.parkFiles({u"a"_s, u"b"_s, u"c"_s});
        world.show();
        world.click(1);

        world.parkFiles({u"newer"_s});
        world.click(1, Button::PutBack);

        QCOMPARE(world.rows(), (QStringList{u"newer"_s, u"b"_s, u"a"_s}));
        QCOMPARE(world.selected(), QStringList{u"b"_s});
    }

    void theKeyboardGoesOnWithTheNextRow()
    {
        RecoveryWorld world;
        world.parkFiles({u"a"_s, u"b"_s, u"c"_s});
        world.show();
        world.click(0);

        world.press(Qt::Key_Return);
        QCOMPARE(world.selected(), QStringList{u"b"_s});
        world.press(Qt::Key_Return);
        world.press(Qt::Key_Return);

        QVERIFY(world.rows().isEmpty());
        QCOMPARE(world.home.names({}).filter(QRegularExpression(u"^[abc]$"_s)).size(), 3);
    }

    void typingFiltersByName()
    {
        RecoveryWorld world;
        world.parkFiles({u"Report.pdf"_s, u"notes.txt"_s, u"report.txt"_s});
        world.show();

        QTest::keyClicks(&world.list(), u"report"_s);
        world.settle();
        QCOMPARE(world.field().text(), u"report"_s);
        QCOMPARE(world.rows(), (QStringList{u"report.txt"_s, u"Report.pdf"_s}));
        QCOMPARE(world.count(), u"2 of 3 files"_s);

        world.press(Qt::Key_Escape);
        QCOMPARE(world.rows().size(), 3);
        QVERIFY(world.view.isVisible());
        world.press(Qt::Key_Escape);
        QVERIFY(!world.view.isVisible());
    }

    void whatHasNoRecordIsShownAndComesBackToo()
    {
        RecoveryWorld world;
        world.home.makeFile(recoveryFolder + u"/lost.txt"_s, "lost");
        world.show();

        QCOMPARE(world.rows(), QStringList{u"lost.txt"_s});
        const QString said = world.list().model()->index(0, 0).data(Qt::AccessibleDescriptionRole).toString();
        QVERIFY2(said.contains(u"kept until you take it"_s), qPrintable(said));
        world.click(0, Button::PutBack);

        QCOMPARE(contentOf(world.home.path(u"lost.txt"_s)), QByteArray("lost"));
        QVERIFY(world.rows().isEmpty());
    }

    void nothingTicksWhileTheWindowIsClosed()
    {
        RecoveryWorld world;
        world.parkFiles({u"a"_s});
        const std::size_t before = world.time.waitingTasks();
        world.show();
        QVERIFY(world.time.waitingTasks() > before);

        world.view.close();

        QCOMPARE(world.time.waitingTasks(), before);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::RecoveryView_test)
#include "RecoveryView_test.moc"
