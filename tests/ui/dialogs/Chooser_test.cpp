// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

/// What the user sees of a chooser.
class OpenChooser final
{
public:
    explicit OpenChooser(QWidget& opener)
        : m_dialog(opener.findChild<QDialog*>())
    {
        if (m_dialog == nullptr || !QTest::qWaitForWindowExposed(m_dialog)) {
            qFatal("the chooser does not open");
        }
    }

    [[nodiscard]] bool open() const { return m_dialog != nullptr && m_dialog->isVisible(); }

    [[nodiscard]] QDialog& dialog() const { return *m_dialog; }

    [[nodiscard]] QAbstractButton& button(const QString& text) const
    {
        for (QAbstractButton* const button : m_dialog->findChildren<QAbstractButton*>()) {
            if (button->isVisible() && button->text().remove(u'&') == text) {
                return *button;
            }
        }
        qFatal("there is no button %s", qPrintable(text));
    }

    [[nodiscard]] QLineEdit& field() const
    {
        for (QLineEdit* const field : m_dialog->findChildren<QLineEdit*>()) {
            if (field->isVisible()) {
                return *field;
            }
        }
        qFatal("there is no field");
    }

    /// The view that shows the names of the folder.
    [[nodiscard]] QAbstractItemView& names() const
    {
        for (const QString& name : {u"listView"_s, u"treeView"_s}) {
            auto* const view = m_dialog->findChild<QAbstractItemView*>(name);
            if (view != nullptr && view->isVisible()) {
                return *view;
            }
        }
        qFatal("there is no view");
    }

    [[nodiscard]] QStringList shown() const
    {
        QStringList result;
        const QAbstractItemView& view = names();
        for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row) {
            result.push_back(view.model()->index(row, 0, view.rootIndex()).data().toString());
        }
        result.sort();
        return result;
    }

    [[nodiscard]] QModelIndex index(const QString& name) const
    {
        const QAbstractItemView& view = names();
        for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row) {
            const QModelIndex index = view.model()->index(row, 0, view.rootIndex());
            if (index.data().toString() == name) {
                return index;
            }
        }
        return {};
    }

    void click(const QString& name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QAbstractItemView& view = names();
        view.scrollTo(index(name));
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, view.visualRect(index(name)).center());
    }

    void doubleClick(const QString& name) const
    {
        click(name);
        QAbstractItemView& view = names();
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index(name)).center());
    }

    /// Types a path and presses Return.
    void go(const QString& path) const
    {
        field().setFocus();
        field().setText(path);
        QTest::keyClick(&field(), Qt::Key_Return);
    }

private:
    QPointer<QDialog> m_dialog;
};

OpenChooser chooserOf(PanelWorld& world)
{
    QTest::mouseClick(world.panel.findChild<DropZone*>(), Qt::LeftButton);
    return OpenChooser(world.panel);
}

OpenChooser chooserOf(PreferencesWorld& world)
{
    world.view.showTab(PreferencesView::Tab::Folders);
    QTest::mouseClick(&named<PushButton>(world.view, u"Add folder"_s), Qt::LeftButton);
    world.settle();
    return OpenChooser(world.view);
}

/// Answers every question with Yes while it lives.
class Agreement final
{
public:
    Agreement()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [] {
            auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (question != nullptr) {
                question->button(QMessageBox::Yes)->click();
            }
        });
        m_timer.start(10ms);
    }

private:
    QTimer m_timer;
};

/// Chooses what a menu has, one entry after the other, as long as there is a menu to open.
void chooseEverythingIn(QAbstractItemView& view, const QPoint& place)
{
    for (int entry = 0; entry < 12; ++entry) {
        QTimer::singleShot(0ms, &view, [entry] {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu != nullptr) {
                const QList<QAction*> actions = menu->actions();
                if (entry < actions.size()) {
                    actions[entry]->trigger();
                }
                menu->close();
            }
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, view.viewport()->mapToGlobal(place));
        QApplication::sendEvent(view.viewport(), &event);
        QApplication::processEvents();
    }
}

void dropOnto(QAbstractItemView& view, const QPoint& place, const QUrl& dragged)
{
    QMimeData data;
    data.setUrls({dragged});
    const auto actions = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &enter);
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &move);
    QDropEvent drop(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &drop);
    QApplication::processEvents();
}

} // namespace

class ChooserTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void choosingFilesChangesNothing()
    {
        PanelWorld world;
        world.home.makeFile(u"place/report.txt"_s);
        world.home.makeFile(u"place/writing/inside.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        chooser.go(world.home.path(u"place"_s));
        QTRY_COMPARE(chooser.shown(), (QStringList{u"report.txt"_s, u"writing"_s}));

        doEverythingTo(chooser, world.home);

        QCOMPARE(world.home.names(u"place"_s), (QStringList{u"report.txt"_s, u"writing"_s}));
        QCOMPARE(world.home.names(u"place/writing"_s), (QStringList{u"inside.txt"_s}));
    }

    void choosingAFolderChangesNothing()
    {
        PreferencesWorld world;
        world.home.makeFile(u"place/writing/inside.txt"_s);
        world.home.makeFolder(u"place/report.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"place"_s));
        chooser.doubleClick(u"place"_s);
        QTRY_COMPARE(chooser.shown(), (QStringList{u"report.txt"_s, u"writing"_s}));

        doEverythingTo(chooser, world.home);

        QCOMPARE(world.home.names(u"place"_s), (QStringList{u"report.txt"_s, u"writing"_s}));
        QCOMPARE(world.home.names(u"place/writing"_s), (QStringList{u"inside.txt"_s}));
    }

    void nothingIsChosenUntilSomebodyChose()
    {
        PreferencesWorld world;
        const OpenChooser chooser = chooserOf(world);

        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
        pressKey(chooser.dialog(), Qt::Key_Return);
        world.settle();

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(chooser.open());
    }

    void returnAnywhereInTheFolderChooserAddsNothing()
    {
        PreferencesWorld world;
        world.home.makeFolder(u"Incoming"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));
        chooser.click(u"Incoming"_s);

        for (QWidget* const part : chooser.dialog().findChildren<QWidget*>()) {
            if (part->isVisible() && part->focusPolicy() != Qt::NoFocus &&
                qobject_cast<QAbstractButton*>(part) == nullptr) {
                part->setFocus();
                pressKey(chooser.dialog(), Qt::Key_Return);
                pressKey(chooser.dialog(), Qt::Key_Enter);
            }
        }
        world.settle();

        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QVERIFY(chooser.open());
    }

    void returnOnATypedFolderGoesThereAndAddAddsIt()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.home.makeFolder(u"Incoming/inside"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(folder);
        QVERIFY(chooser.open());
        QVERIFY(world.settings().autoCleanFolders.isEmpty());
        QTRY_COMPARE(chooser.shown(), QStringList{u"inside"_s});
        chooser.button(u"Add"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
    }

    void addAddsATypedFolderWithoutGoingThere_data()
    {
        QTest::addColumn<QString>("typed");

        QTest::newRow("the whole path") << u"%1/Incoming"_s;
        QTest::newRow("with a slash at its end") << u"%1/Incoming/"_s;
        QTest::newRow("from the home on") << u"~/Incoming"_s;
        QTest::newRow("by its name in the folder shown") << u"Incoming"_s;
    }

    void addAddsATypedFolderWithoutGoingThere()
    {
        QFETCH(const QString, typed);
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.field().setText(typed.contains(u'%') ? typed.arg(world.home.path({})) : typed);
        QVERIFY(chooser.button(u"Add"_s).isEnabled());
        chooser.button(u"Add"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
    }

    void whatIsNoFolderCannotBeAddedAsOne_data()
    {
        QTest::addColumn<QString>("typed");

        QTest::newRow("nothing") << QString();
        QTest::newRow("a blank") << u" "_s;
        QTest::newRow("a file") << u"notes.txt"_s;
        QTest::newRow("what is not there") << u"nowhere/at/all"_s;
    }

    void whatIsNoFolderCannotBeAddedAsOne()
    {
        QFETCH(const QString, typed);
        PreferencesWorld world;
        world.home.makeFile(u"notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(typed);

        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
        QVERIFY(chooser.open());
        QVERIFY(world.settings().autoCleanFolders.isEmpty());
    }

    void theFolderThatIsClickedIsTheOneThatIsAdded()
    {
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.home.makeFolder(u"Other"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));

        chooser.click(u"Other"_s);
        chooser.click(u"Incoming"_s);
        chooser.button(u"Add"_s).click();
        world.settle();

        QCOMPARE(world.settings().autoCleanFolders.size(), 1);
        QCOMPARE(world.settings().autoCleanFolders.constFirst().folderPath, folder);
    }

    void theFolderChooserOpensAtHomeAndThenWhereItWasLeft()
    {
        const WorkingDirectory elsewhere(u"/usr/share"_s);
        PreferencesWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        world.home.makeFolder(u"Incoming/inside"_s);
        world.home.makeFolder(u"Other"_s);
        {
            const OpenChooser chooser = chooserOf(world);
            QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));
            chooser.go(folder);
            QTest::keyClick(&chooser.dialog(), Qt::Key_Escape);
            QTRY_VERIFY(!world.view.showingFolderPicker());
        }
        {
            const OpenChooser chooser = chooserOf(world);
            QTRY_COMPARE(chooser.shown(), QStringList{u"inside"_s});
            QVERIFY(!chooser.button(u"Add"_s).isEnabled());
            QTest::keyClick(&chooser.dialog(), Qt::Key_Escape);
            QTRY_VERIFY(!world.view.showingFolderPicker());
        }
        QVERIFY(QDir(folder).removeRecursively());
        const OpenChooser chooser = chooserOf(world);
        QTRY_COMPARE(chooser.shown(), QStringList{u"Other"_s});
    }

    void theFileChooserOpensAtHomeAndThenWhereItWasLeft()
    {
        const WorkingDirectory elsewhere(u"/usr/share"_s);
        PanelWorld world;
        world.home.makeFile(u"Incoming/inside.txt"_s);
        {
            const OpenChooser chooser = chooserOf(world);
            QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));
            chooser.go(world.home.path(u"Incoming"_s));
            QTRY_COMPARE(chooser.shown(), QStringList{u"inside.txt"_s});
            QTest::keyClick(&chooser.dialog(), Qt::Key_Escape);
            QTRY_VERIFY(world.panel.chooser() == nullptr);
        }
        const OpenChooser chooser = chooserOf(world);
        QTRY_COMPARE(chooser.shown(), QStringList{u"inside.txt"_s});
        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
    }

    void theFileChooserGoesToATypedFolderAndAddsAFolderByItsButton()
    {
        PanelWorld world;
        const QString folder = world.home.makeFolder(u"Incoming"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(folder);
        QVERIFY(chooser.open());
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(!chooser.button(u"Add"_s).isEnabled());
        chooser.field().setText(folder);
        chooser.button(u"Add"_s).click();
        PanelWorld::settle();

        QCOMPARE(world.listedNames(), QStringList{u"Incoming"_s});
    }

    void returnOnATypedFileAddsIt()
    {
        PanelWorld world;
        const QString file = world.home.makeFile(u"notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);

        chooser.go(file);
        PanelWorld::settle();

        QCOMPARE(world.listedNames(), QStringList{u"notes.txt"_s});
        QVERIFY(!chooser.open());
    }

    void aDoubleClickGoesIntoAFolderAndAddsAFile()
    {
        PanelWorld world;
        world.home.makeFile(u"Incoming/notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        QTRY_VERIFY(chooser.shown().contains(u"Incoming"_s));

        chooser.doubleClick(u"Incoming"_s);
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
        QVERIFY(world.store().items().isEmpty());
        chooser.doubleClick(u"notes.txt"_s);
        PanelWorld::settle();

        QCOMPARE(world.listedNames(), QStringList{u"notes.txt"_s});
    }

    void hiddenFilesAreShownOnDemand()
    {
        PanelWorld world;
        world.home.makeFile(u"place/.secret"_s);
        world.home.makeFile(u"place/notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        chooser.go(world.home.path(u"place"_s));
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});

        chooser.names().setFocus();
        pressKey(chooser.dialog(), Qt::Key_H, Qt::ControlModifier);
        QTRY_COMPARE(chooser.shown(), (QStringList{u".secret"_s, u"notes.txt"_s}));
        pressKey(chooser.dialog(), Qt::Key_H, Qt::ControlModifier);

        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
    }

    void theKeyboardGoesUpAndBackAndForward()
    {
        PanelWorld world;
        world.home.makeFile(u"outer/inner/notes.txt"_s);
        const OpenChooser chooser = chooserOf(world);
        chooser.go(world.home.path(u"outer/inner"_s));
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});

        pressKey(chooser.dialog(), Qt::Key_Up, Qt::AltModifier);
        QTRY_COMPARE(chooser.shown(), QStringList{u"inner"_s});
        pressKey(chooser.dialog(), Qt::Key_Left, Qt::AltModifier);
        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
        pressKey(chooser.dialog(), Qt::Key_Right, Qt::AltModifier);
        QTRY_COMPARE(chooser.shown(), QStringList{u"inner"_s});
        chooser.names().setFocus();
        QTest::keyClick(&chooser.names(), Qt::Key_Down);
        QTest::keyClick(&chooser.names(), Qt::Key_Return);

        QTRY_COMPARE(chooser.shown(), QStringList{u"notes.txt"_s});
        QVERIFY(world.store().items().isEmpty());
    }

private:
    class WorkingDirectory final
    {
    public:
        explicit WorkingDirectory(const QString& path)
            : m_before(QDir::currentPath())
        {
            QDir::setCurrent(path);
        }

        WorkingDirectory(const WorkingDirectory&) = delete;
        WorkingDirectory& operator=(const WorkingDirectory&) = delete;

        ~WorkingDirectory() { QDir::setCurrent(m_before); }

    private:
        QString m_before;
    };

    /// All that could change a file, with every question answered by Yes.
    static void doEverythingTo(const OpenChooser& chooser, const TemporaryHome& home)
    {
        const Agreement agreement;
        QAbstractItemView& view = chooser.names();
        for (const QString& name : {u"writing"_s, u"report.txt"_s}) {
            if (!chooser.index(name).isValid()) {
                continue; // gone already
            }
            chooser.click(name);
            view.setFocus();
            for (const Qt::KeyboardModifiers modifiers : {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::SHIFT)}) {
                pressKey(chooser.dialog(), Qt::Key_Delete, modifiers);
            }
            pressKey(chooser.dialog(), Qt::Key_F2);
            for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Z}) {
                pressKey(chooser.dialog(), key);
            }
            view.setCurrentIndex(chooser.index(name));
            view.edit(chooser.index(name));
            chooseEverythingIn(view, view.visualRect(chooser.index(name)).center());
            chooseEverythingIn(view, view.viewport()->rect().bottomRight() - QPoint(4, 4));
        }
        for (QAbstractButton* const button : chooser.dialog().findChildren<QAbstractButton*>()) {
            if (button->isVisible() && button->toolTip().contains(u"Folder"_s)) {
                button->click();
            }
        }
        dropOnto(view, view.visualRect(chooser.index(u"writing"_s)).center(),
                 QUrl::fromLocalFile(home.path(u"place/report.txt"_s)));
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::ChooserTest)
#include "Chooser_test.moc"
