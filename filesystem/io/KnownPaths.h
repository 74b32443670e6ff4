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

/// A folder or link on a path that other users may replace, with the data that shows whether they did.
struct PathStep
{
    /// Free of links, as bytes.
    QByteArray path;
    std::uint64_t device = 0;
    /// 0 if the file system does not keep inode numbers stable.
    std::uint64_t inode = 0;
    /// The birth time in nanoseconds since 1970; 0 if the file system does not record it.
    std::int64_t born = 0;

    friend bool operator==(const PathStep&, const PathStep&) = default;
};

using PathSteps = QList<PathStep>;

/// Remembers where the paths that the user named led at that time, if other users can make them lead elsewhere by
/// replacing a folder in one that they may write to. Paths in folders of the user and the administrator take no space
/// and no time here. Kept in a file, because the paths are.
class KnownPaths final
{
public:
    /// Reads `file`. Anything unreadable or, in an edited file, meaningless counts as empty.
    explicit KnownPaths(QString file);

    /// Remembers where these entries are now, replacing what was remembered about them. For an entry directly in a
    /// folder of rememberFolder(), the place remembered for that folder applies.
    void remember(const QStringList& paths);
    void rememberFolder(const QString& folder);

    /// Remembers what a KnownPathsLook found about an entry, or about a folder and its entries.
    void note(const QString& path, const std::optional<PathSteps>& steps);
    void noteFolder(const QString& folder, const std::optional<PathSteps>& steps);

    /// Remembers where entries are that have no record yet, because they were named before this class existed or in a
    /// folder that nobody else could change then. Only for existing entries with no links on their path, and not on
    /// file systems served by another machine or a program, which may not answer.
    void rememberOthers(const QStringList& paths);

    /// Takes over what a changed copy of this object knows about these entries. With this, a lane can do the looking:
    /// hand it a copy (which shares its data), and adopt the result here.
    void adopt(const KnownPaths& changed, const QStringList& paths);

    /// Forgets all other entries and folders.
    void keepOnly(const QSet<QString>& paths, const QSet<QString>& folders);

    /// What was remembered about an entry; nothing if nobody else could change where its path led. An empty list means
    /// that others may write to its folder and that it was not a folder itself.
    [[nodiscard]] std::optional<PathSteps> stepsTo(const QString& path) const;
    /// The same for a folder of rememberFolder().
    [[nodiscard]] std::optional<PathSteps> stepsInto(const QString& folder) const;

    [[nodiscard]] bool isEmpty() const { return m_steps.isEmpty(); }

    /// Whether anything has changed since it was read or last taken. Then content() is to be written.
    [[nodiscard]] bool takeChanges();
    /// What the file is to hold. Takes long for many paths: have a copy of this object do it on a lane.
    [[nodiscard]] QByteArray content() const;

    /// Call this if the content taken last could not be written, so that it can be taken again.
    void changesWereLost() { m_changed = true; }

private:
    void read();
    void set(const QString& key, const std::optional<PathSteps>& steps);

    QString m_file;
    /// By path; folders of rememberFolder() have a trailing slash.
    QHash<QString, PathSteps> m_steps;
    bool m_changed = false;
};

} // namespace lapsa::fileSystem
