// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileChooser.h"
#include "ManualLanes.h"
#include "ManualTime.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "TemporaryHome.h"

#include <QCompleter>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

/// A chooser whose looks at the disk run when the test says so.
class ChooserLanesTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void init()
    {
        m_home.emplace();
        m_home->makeFile(u"here/first.txt"_s);
        m_home->makeFile(u"here/inner/second.txt"_s);
        m_home->makeFile(u"there/third.txt"_s);
    }

    void nothingIsKnownUntilTheLanesHaveRun()
    {
        begin(u"here"_s);
        QCOMPARE(shown(), QStringList());
        QCOMPARE(places().count(), 2);

        m_lanes->runAll();

        QCOMPARE(shown(), (QStringList{u"inner"_s, u"first.txt"_s}));
        QVERIFY(places().count() >= 2);
    }

    void aTypedPathIsLookedAtOnItsLane()
    {
        begin(u"here"_s);
        m_lanes->runAll();

        field().setText(m_home->path(u"here/first.txt"_s));
        QVERIFY(!add().isEnabled());
        m_lanes->runAll();
        QVERIFY(add().isEnabled());
        QTest::keyClick(&field(), Qt::Key_Return);
        QVERIFY(m_chooser->chosen().isEmpty());
        m_lanes->runAll();

        QCOMPARE(m_chooser->chosen(), QList{QUrl::fromLocalFile(m_home->path(u"here/first.txt"_s))});
    }

    void onlyWhatIsStillThereIsAddedByItsPath()
    {
        begin(u"here"_s);
        field().setText(u"first.txt"_s);
        m_lanes->runAll();
        QVERIFY(add().isEnabled());
        QVERIFY(QFile::remove(m_home->path(u"here/first.txt"_s)));

        add().click();
        m_lanes->runAll();

        QVERIFY(m_chooser->chosen().isEmpty());
        QVERIFY(!add().isEnabled());
    }

    void anAnswerThatComesTooLateIsIgnored()
    {
        begin(u"here"_s);
        m_lanes->runAll();
        go(u"here/inner"_s);
        const Lanes::Report late = m_lanes->workOnNext();

        go(u"there"_s);
        m_lanes->runAll();
        late();
        m_lanes->runAll();

        QCOMPARE(shown(), QStringList{u"third.txt"_s});
        QCOMPARE(m_chooser->folder(), m_home->path(u"there"_s));
    }

    void anAnswerAfterTheDialogIsGoneIsIgnored()
    {
        begin(u"here"_s);
        const Lanes::Report late = m_lanes->takeNext();
        m_chooser.reset();

        late();
        m_lanes->runAll();
    }

    void textTypedMeanwhileTakesTheWishBack()
    {
        begin(u"here"_s);
        m_lanes->runAll();
        field().setText(u"first.txt"_s);
        QTest::keyClick(&field(), Qt::Key_Return);

        QTest::keyClick(&field(), Qt::Key_X);
        m_lanes->runAll();

        QVERIFY(m_chooser->chosen().isEmpty());
    }

    void theWaitIsToldAfterHalfASecond()
    {
        const Language english("en_US.UTF-8");
        begin(u"here"_s);

        m_time.advance(499ms);
        QVERIFY(!tells(u"Waiting for the disk"_s));
        m_time.advance(1ms);
        QVERIFY(tells(u"Waiting for the disk"_s));
        m_lanes->runAll();

        QVERIFY(!tells(u"Waiting for the disk"_s));
    }

    void aFolderThatIsNoneIsLeftAgain()
    {
        begin(u"here"_s);
        m_lanes->runAll();
        QVERIFY(QFile::remove(m_home->path(u"here/inner/second.txt"_s)));
        QVERIFY(QDir().rmdir(m_home->path(u"here/inner"_s)));

        select(u"inner"_s);
        emit names().doubleClicked(names().model()->index(0, 0));
        m_lanes->runAll();

        QCOMPARE(m_chooser->folder(), m_home->path(u"here"_s));
        QCOMPARE(shown(), QStringList{u"first.txt"_s});
    }

    void whatComesAndGoesIsSeenAndTheSelectionStays()
    {
        begin(u"here"_s);
        m_lanes->runAll();
        select(u"first.txt"_s);
        m_home->makeFile(u"here/another.txt"_s);
        m_home->makeFile(u"here/zebra.txt"_s);
        QVERIFY(QFile::remove(m_home->path(u"here/inner/second.txt"_s)));
        QVERIFY(QDir().rmdir(m_home->path(u"here/inner"_s)));

        m_time.advance(2s);
        m_lanes->runAll();

        QCOMPARE(shown(), (QStringList{u"another.txt"_s, u"first.txt"_s, u"zebra.txt"_s}));
        QCOMPARE(selected(), QStringList{u"first.txt"_s});
        QVERIFY(add().isEnabled());
        m_chooser->hide();
        m_time.advance(10s);
        QVERIFY(m_lanes->isIdle());
    }

    void whileADiskHangsItIsNotAskedAgain()
    {
        begin(u"here"_s);
        m_lanes->runAll();
        m_time.advance(2s);
        const Lanes::Report hangs = m_lanes->takeNext();

        m_time.advance(20s);

        QVERIFY(m_lanes->waiting() == 0);
        hangs();
        m_lanes->runAll();
        QCOMPARE(shown(), (QStringList{u"inner"_s, u"first.txt"_s}));
    }

    void afterGoingUpTheKeyboardGoesOnAtTheFolderLeft()
    {
        begin(u"here/inner"_s);
        m_lanes->runAll();

        QTest::keyClick(m_chooser.get(), Qt::Key_Up, Qt::AltModifier);
        m_lanes->runAll();

        QCOMPARE(names().currentIndex().data().toString(), u"inner"_s);
        QVERIFY(selected().isEmpty());
    }

    void absolutePathsAreCompleted()
    {
        begin(u"there"_s);
        m_lanes->runAll();

        field().setFocus();
        QTest::keyClicks(&field(), m_home->path(u"here/f"_s));
        m_lanes->runAll();

        field().completer()->setCompletionPrefix(field().text());
        QCOMPARE(field().completer()->currentCompletion(), m_home->path(u"here/first.txt"_s));
    }

private:
    void begin(const QString& folder)
    {
        m_chooser.reset();
        m_lanes.emplace();
        m_chooser = std::make_unique<FileChooser>(ChooserEnvironment{*m_lanes, m_time}, m_home->path(folder), nullptr);
        m_chooser->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_chooser.get()));
    }

    [[nodiscard]] QTreeView& names() const { return *m_chooser->findChild<QTreeView*>(); }

    [[nodiscard]] QListWidget& places() const { return *m_chooser->findChild<QListWidget*>(); }

    [[nodiscard]] QLineEdit& field() const { return *m_chooser->findChild<QLineEdit*>(); }

    [[nodiscard]] PushButton& add() const { return named<PushButton>(*m_chooser, u"Add"_s); }

    [[nodiscard]] QStringList shown() const
    {
        QStringList shown;
        for (int row = 0; row < names().model()->rowCount(); ++row) {
            shown.push_back(names().model()->index(row, 0).data().toString());
        }
        return shown;
    }

    [[nodiscard]] QStringList selected() const
    {
        QStringList selected;
        for (const QModelIndex& row : names().selectionModel()->selectedRows()) {
            selected.push_back(row.data().toString());
        }
        return selected;
    }

    void select(const QString& name) const
    {
        const int row = static_cast<int>(shown().indexOf(name));
        names().selectionModel()->select(names().model()->index(row, 0),
                                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }

    /// Types a folder; the look at what it is has run on return, the reading has not.
    void go(const QString& folder)
    {
        field().setText(m_home->path(folder));
        m_lanes->runAll();
        QTest::keyClick(&field(), Qt::Key_Return);
        m_lanes->runNext();
    }

    [[nodiscard]] bool tells(const QString& text) const
    {
        const QList<ElidedLabel*> labels = m_chooser->findChildren<ElidedLabel*>();
        return std::ranges::any_of(labels, [&text](const auto* label) { return label->text() == text; });
    }

    std::optional<TemporaryHome> m_home;
    ManualTime m_time;
    std::optional<ManualLanes> m_lanes;
    std::unique_ptr<FileChooser> m_chooser;
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::ChooserLanesTest)
#include "Chooser_lanes_test.moc"
