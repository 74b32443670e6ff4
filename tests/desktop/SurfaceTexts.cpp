// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SurfaceTexts.h"

#include <QAccessible>
#include <QHeaderView>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// What a screen reader is told.
void noteAccessible(Texts& texts, QAccessibleInterface* interface)
{
    if (interface == nullptr || interface->state().invisible) {
        return;
    }
    for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description, QAccessible::Value}) {
        note(texts, interface->text(kind));
    }
    if (auto* const actions = interface->actionInterface()) {
        for (const QString& action : actions->actionNames()) {
            note(texts, actions->localizedActionName(action));
            note(texts, actions->localizedActionDescription(action));
        }
    }
    for (int child = 0; child < interface->childCount(); ++child) {
        noteAccessible(texts, interface->child(child));
    }
}

} // namespace

void note(Texts& texts, const QString& text)
{
    // The name of an entry and its key are two texts.
    for (const QString& part : text.split(u'\t')) {
        if (!part.trimmed().isEmpty()) {
            texts.insert(QString(part).remove(u'&'));
        }
    }
}

void noteActions(Texts& texts, const QList<QAction*>& actions)
{
    for (const QAction* const action : actions) {
        note(texts, action->text());
        note(texts, action->shortcut().toString(QKeySequence::NativeText));
    }
}

void noteSurface(Texts& texts, QWidget& surface)
{
    QList<QWidget*> widgets = surface.findChildren<QWidget*>();
    widgets.push_back(&surface);
    for (QWidget* const widget : widgets) {
        if (widget->isHidden()) {
            continue;
        }
        for (const char* const property : {"text", "title", "toolTip", "placeholderText", "windowTitle",
                                           "accessibleName", "accessibleDescription", "statusTip", "whatsThis"}) {
            note(texts, widget->property(property).toString());
        }
        if (auto* const field = qobject_cast<QLineEdit*>(widget)) {
            const std::unique_ptr<QMenu> menu(field->createStandardContextMenu());
            noteActions(texts, menu->actions());
        }
        if (const auto* const header = qobject_cast<QHeaderView*>(widget)) {
            for (int section = 0; section < header->count(); ++section) {
                note(texts, header->model()->headerData(section, Qt::Horizontal).toString());
            }
        }
        noteActions(texts, widget->actions());
    }
    noteAccessible(texts, QAccessible::queryAccessibleInterface(&surface));
}

} // namespace lapsa::test
