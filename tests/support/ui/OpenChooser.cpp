// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "OpenChooser.h"

#include "DropZone.h"
#include "PushButton.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QDialog>
#include <QLineEdit>
#include <QTest>

namespace lapsa::test {

using namespace Qt::StringLiterals;

OpenChooser::OpenChooser(QWidget& opener)
    : m_dialog(opener.findChild<QDialog*>())
{
    if (m_dialog == nullptr || !QTest::qWaitForWindowExposed(m_dialog)) {
        qFatal("the chooser does not open");
    }
}

bool OpenChooser::open() const
{
    return m_dialog != nullptr && m_dialog->isVisible();
}

QDialog& OpenChooser::dialog() const
{
    return *m_dialog;
}

QAbstractButton& OpenChooser::button(const QString& text) const
{
    for (QAbstractButton* const button : m_dialog->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->text().remove(u'&') == text) {
            return *button;
        }
    }
    qFatal("there is no button %s", qPrintable(text));
}

QLineEdit& OpenChooser::field() const
{
    for (QLineEdit* const field : m_dialog->findChildren<QLineEdit*>()) {
        if (field->isVisible()) {
            return *field;
        }
    }
    qFatal("there is no field");
}

QAbstractItemView& OpenChooser::names() const
{
    for (const QString& name : {u"listView"_s, u"treeView"_s}) {
        auto* const view = m_dialog->findChild<QAbstractItemView*>(name);
        if (view != nullptr && view->isVisible()) {
            return *view;
        }
    }
    qFatal("there is no view");
}

QStringList OpenChooser::shown() const
{
    QStringList result;
    const QAbstractItemView& view = names();
    for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row) {
        result.push_back(view.model()->index(row, 0, view.rootIndex()).data().toString());
    }
    result.sort();
    return result;
}

QModelIndex OpenChooser::index(const QString& name) const
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

void OpenChooser::click(const QString& name, Qt::KeyboardModifiers modifiers) const
{
    QAbstractItemView& view = names();
    view.scrollTo(index(name));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, view.visualRect(index(name)).center());
}

void OpenChooser::doubleClick(const QString& name) const
{
    click(name);
    QAbstractItemView& view = names();
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index(name)).center());
}

void OpenChooser::go(const QString& path) const
{
    field().setFocus();
    field().setText(path);
    QTest::keyClick(&field(), Qt::Key_Return);
}

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

} // namespace lapsa::test
