// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PathCompleter.h"

#include "ChooserModel.h"

#include <QLineEdit>

namespace lapsa {

PathCompleter::PathCompleter(Lanes& lanes, bool foldersOnly, QLineEdit& field)
    : QCompleter(&field)
    , m_field(field)
    , m_names(new ChooserModel(lanes, foldersOnly, this))
{
    setModel(m_names);
    setCompletionRole(ChooserModel::pathRole);
    field.setCompleter(this);
    connect(&field, &QLineEdit::textEdited, this, &PathCompleter::readFolderOf);
    connect(m_names, &ChooserModel::grew, this, &PathCompleter::offer);
}

void PathCompleter::setHiddenShown(bool shown)
{
    m_names->setHiddenShown(shown);
}

void PathCompleter::readFolderOf(const QString& text)
{
    const qsizetype slash = text.lastIndexOf(u'/');
    const QString folder = text.first(slash > 0 ? slash : slash + 1);
    if (!folder.startsWith(u'/')) {
        return;
    }
    if (folder == m_names->folder()) {
        m_names->refresh();
    } else {
        m_names->showFolder(folder);
    }
}

/// The field asked for completions before the folder was read.
void PathCompleter::offer()
{
    if (m_field.hasFocus() && m_field.isModified() && m_field.text().startsWith(m_names->folder())) {
        setCompletionPrefix(m_field.text());
        complete();
    }
}

} // namespace lapsa
