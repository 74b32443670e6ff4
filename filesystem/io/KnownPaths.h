// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace lapsa::fileSystem {

/// A folder or link on a path that other users may exchange for another one, and what tells whether they did.
struct PathStep
{
    /// Without links, as bytes.
    QByteArray path;
    std::uint64_t device = 0;
    /// 0 where the file system gives out new numbers as it likes.
    std::uint64_t inode = 0;
    /// The birth time in nanoseconds since 1970; 0 where the file system keeps none.
    std::int64_t born = 0;

    friend bool operator==(const PathStep&, const PathStep&) = default;
};

using PathSteps = QList<PathStep>;

/// Remembers where the paths that the user named led at that time, as far as other users can make them lead elsewhere:
/// by exchanging a folder in one that they may write. What lies in folders of the user's and the administrator's own
/// takes no room and no time here. Kept in a file, since the paths are.
class KnownPaths final
{
public:
    /// Reads what `file` holds. What cannot be read is empty, and so is what an edited file makes no sense in.
    explicit KnownPaths(QString file);

    /// Remembers where these entries are now, in place of what was remembered of them before. An entry directly in a
    /// folder of rememberFolder() is where that one was then.
    void remember(const QStringList& paths);
    void rememberFolder(const QString& folder);

    /// Remembers where entries are of which nothing is remembered, since they were named before this was, or in a
    /// folder that was nobody else's to change then. Only of what is there, by a path without links on the way, and
    /// where neither another machine nor a program is asked, which may not answer.
    void rememberOthers(const QStringList& paths);

    /// Forgets all entries and folders but these.
    void keepOnly(const QSet<QString>& paths, const QSet<QString>& folders);

    /// What was remembered of an entry; nothing where nobody else could change where its path led. An empty list: the
    /// folder that holds it is one that others may write, and it was no folder itself.
    [[nodiscard]] std::optional<PathSteps> stepsTo(const QString& path) const;
    /// The same of a folder of rememberFolder().
    [[nodiscard]] std::optional<PathSteps> stepsInto(const QString& folder) const;

    [[nodiscard]] bool isEmpty() const { return m_steps.isEmpty(); }

    /// The file's new content, if anything has changed since it was read or last asked for.
    [[nodiscard]] std::optional<QByteArray> takeChanges();

    /// The content that was taken last could not be written: it is to be asked for again.
    void changesWereLost() { m_changed = true; }

private:
    void read();
    void set(const QString& key, const std::optional<PathSteps>& steps);

    QString m_file;
    /// By path; folders of rememberFolder() with a trailing slash.
    QHash<QString, PathSteps> m_steps;
    bool m_changed = false;
};

} // namespace lapsa::fileSystem
