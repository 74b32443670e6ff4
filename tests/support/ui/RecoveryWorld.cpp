// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryWorld.h"

#include "ElidedLabel.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "RecoveryDelegate.h"
#include "StoreSetup.h"
#include "TextLabel.h"

#include <QApplication>
#include <QIcon>
#include <QLineEdit>
#include <QTest>

namespace lapsa::test {

using namespace std::chrono_literals;

RecoveryWorld::RecoveryWorld()
    : view({.store = store(), .clock = time, .mainQueue = time, .icons = [](const QString&, bool) { return QIcon(); }})
{}

void RecoveryWorld::parkFiles(const QStringList& names)
{
    for (const QString& name : names) {
        park(*this, name);
        time.advance(1min);
    }
    settle();
}

void RecoveryWorld::show()
{
    view.show();
    view.activateWindow();
    if (!QTest::qWaitForWindowActive(&view)) {
        qFatal("the Recovery window does not come up");
    }
    settle();
}

void RecoveryWorld::settle()
{
    time.settle();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

RecoveryListView& RecoveryWorld::list()
{
    return *view.findChild<RecoveryListView*>();
}

QLineEdit& RecoveryWorld::field()
{
    return *view.findChild<QLineEdit*>();
}

PushButton& RecoveryWorld::button(const QString& text)
{
    for (PushButton* const button : view.findChildren<PushButton*>()) {
        if (button->text() == text) {
            return *button;
        }
    }
    qFatal("no button \"%s\"", qPrintable(text));
}

QStringList RecoveryWorld::rows()
{
    QStringList names;
    for (int row = 0; row < list().model()->rowCount(); ++row) {
        names.push_back(list().model()->index(row, 0).data().toString());
    }
    return names;
}

QStringList RecoveryWorld::selected()
{
    QStringList names;
    for (const int row : list().selectedRows()) {
        names.push_back(list().model()->index(row, 0).data().toString());
    }
    return names;
}

QString RecoveryWorld::message()
{
    const TextLabel* const label = view.findChild<TextLabel*>(QString(), Qt::FindDirectChildrenOnly);
    return label->isVisible() ? label->text() : QString();
}

QString RecoveryWorld::count()
{
    return button(RecoveryDelegate::putBackText()).parentWidget()->findChild<ElidedLabel*>()->text();
}

RecoveryRowLayout RecoveryWorld::layoutOf(int row)
{
    const QModelIndex index = list().model()->index(row, 0);
    return RecoveryDelegate::layoutOf(index, list().visualRect(index), list().layoutDirection());
}

void RecoveryWorld::click(int row, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(list().viewport(), Qt::LeftButton, modifiers, layoutOf(row).icon.center());
    settle();
}

void RecoveryWorld::click(int row, RecoveryRowLayout::Button button)
{
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier, layoutOf(row).rectOf(button).center());
    settle();
}

void RecoveryWorld::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    // By way of the window, so that shortcuts are asked first.
    QTest::keyClick(view.windowHandle(), key, modifiers);
    settle();
}

} // namespace lapsa::test
