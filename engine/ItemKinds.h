// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCache>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

namespace lapsa {

class Lanes;

/// What the path of an item is known to be.
enum class ItemKind
{
    /// Nobody has looked yet, or the disk has not answered.
    Unknown,
    /// Not a folder. Also a path at which there is nothing.
    File,
    /// A folder, or a link to one.
    Folder,
};

/// Looks on the lanes whether items are files or folders, and remembers the answers. At most one look per folder is
/// under way at a time, so that a disk that does not answer holds up no more than that. Main thread only.
class ItemKinds final : public QObject
{
    Q_OBJECT

public:
    /// `lanes` must outlive this object.
    explicit ItemKinds(Lanes& lanes);

    /// The last answer. Accesses no disk.
    [[nodiscard]] ItemKind kindOf(const QString& path) const;

    /// Looks at an absolute path, again if it was looked at before. found() brings the answer if it is a new one; with
    /// lanes that run at once, before this returns.
    void lookUp(const QString& path);

    /// The same, but only if there is no answer yet.
    void lookUpOnce(const QString& path);

signals:
    /// kindOf() has another answer than before.
    void found(const QString& path);

private:
    struct Folder
    {
        QSet<QString> underWay;
        QStringList waiting;
    };

    void look(const QString& folder);
    void note(const QString& folder, const QHash<QString, ItemKind>& kinds);

    Lanes& m_lanes;
    QHash<QString, Folder> m_folders;
    /// The answers that were needed last: bounded, because a list may have any number of items.
    QCache<QString, ItemKind> m_known;
};

} // namespace lapsa
