// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "OpenChooser.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

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

/// All that could change a file, with every question answered by Yes.
void doEverythingTo(const OpenChooser& chooser, const TemporaryHome& home)
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

} // namespace

/// Choosing only looks: nothing in the dialog changes a file.
class ChooserSafetyTest final : public QObject
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
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::ChooserSafetyTest)
#include "Chooser_safety_test.moc"
