// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace lapsa::test {

/// The groups of a desktop entry, each with its keys.
using DesktopGroups = QMap<QString, QMap<QString, QString>>;

/// What `cmake --install` puts into a temporary folder; it goes with this object.
class InstalledTree final
{
public:
    /// Installed under the folder `name` of a temporary one as prefix.
    explicit InstalledTree(const QString& name = QStringLiteral("prefix"));

    /// Installed for `prefix`, but staged in a temporary folder.
    [[nodiscard]] static InstalledTree stagedFor(const QString& prefix);

    /// The prefix, or the folder that stands for the root where the tree is staged.
    [[nodiscard]] const QString& root() const { return m_root; }

    [[nodiscard]] QString path(const QString& relative) const;
    /// All files, relative to the root and sorted.
    [[nodiscard]] QStringList files() const;

private:
    struct Staged
    {};

    InstalledTree(Staged tag, const QString& prefix);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_root;
};

[[nodiscard]] QByteArray contentOf(const QString& path);
[[nodiscard]] DesktopGroups groupsOf(const QString& path);

/// What a program does: its exit code, and all that it writes.
struct Outcome
{
    int code = -1;
    QByteArray output;
};

[[nodiscard]] Outcome outcomeOf(const QString& program, const QStringList& arguments);

} // namespace lapsa::test
