// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace lapsa::test {

/// A home folder and a second volume, each a small file system of its own that only this process and its children see.
/// `HOME` and `XDG_DATA_HOME` point into the home until it goes.
class FaultWorld final
{
public:
    /// Under `folder`. Ends the program where nothing can be made there.
    explicit FaultWorld(const QString& folder);
    FaultWorld(const FaultWorld&) = delete;
    FaultWorld& operator=(const FaultWorld&) = delete;
    ~FaultWorld();

    /// Whether both are file systems of their own. Without the right to mount they are folders of one.
    [[nodiscard]] bool mounted() const { return m_mounted; }

    /// The folder that holds both.
    [[nodiscard]] const QByteArray& base() const { return m_folder; }

    [[nodiscard]] const QString& home() const { return m_home; }

    [[nodiscard]] const QString& volume() const { return m_volume; }

    [[nodiscard]] QString dataFolder() const { return m_home + QStringLiteral("/.local/share/Lapsa"); }

    /// Empties both, gives them to another user, and makes this process that user's, for good.
    void becomeOrdinaryUser() const;

    /// Empties both.
    void clear() const;
    /// Bounds the bytes that one of the two has room for, in the words of tmpfs(5): "64k".
    void resize(const QString& place, const QByteArray& size) const;

private:
    QByteArray m_folder;
    QString m_home;
    QString m_volume;
    bool m_mounted = false;
};

/// Makes the mounts of this process and its children private to them, as root or in a user namespace. False where the
/// system allows neither.
[[nodiscard]] bool enterPrivateMounts();

} // namespace lapsa::test
