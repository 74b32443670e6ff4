// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCompleter>

class QLineEdit;

namespace lapsa {

class ChooserModel;
class Lanes;

/// Completes absolute paths while they are typed. Lanes read the folders.
class PathCompleter final : public QCompleter
{
    Q_OBJECT

public:
    /// Belongs to the field. `lanes` must outlive it.
    PathCompleter(Lanes& lanes, bool foldersOnly, QLineEdit& field);

    void setHiddenShown(bool shown);

private:
    void readFolderOf(const QString& text);
    void offer();

    QLineEdit& m_field;
    ChooserModel* m_names;
};

} // namespace lapsa
