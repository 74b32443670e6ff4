// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PanelWorld.h"
#include "PreferencesWorld.h"

#include <QDir>
#include <QModelIndex>
#include <QPointer>

class QAbstractButton;
class QAbstractItemView;
class QDialog;
class QLineEdit;

namespace lapsa::test {

/// What the user sees of a chooser. Each part that is asked for has to be there: else the test program ends.
class OpenChooser final
{
public:
    /// The chooser of the panel or of the preferences, which is waited for.
    explicit OpenChooser(QWidget& opener);

    [[nodiscard]] bool open() const;
    [[nodiscard]] QDialog& dialog() const;
    [[nodiscard]] QAbstractButton& button(const QString& text) const;
    [[nodiscard]] QLineEdit& field() const;
    /// The view that shows the names of the folder.
    [[nodiscard]] QAbstractItemView& names() const;
    /// The names in the view, sorted.
    [[nodiscard]] QStringList shown() const;
    /// Where a name stands in the view; invalid where it is not.
    [[nodiscard]] QModelIndex index(const QString& name) const;

    void click(const QString& name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void doubleClick(const QString& name) const;
    /// Types a path and presses Return.
    void go(const QString& path) const;

private:
    QPointer<QDialog> m_dialog;
};

/// Opens the chooser as the user does.
[[nodiscard]] OpenChooser chooserOf(PanelWorld& world);
[[nodiscard]] OpenChooser chooserOf(PreferencesWorld& world);

/// Another working directory, until it goes.
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

} // namespace lapsa::test
