// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace lapsa::test {

/// Mounts that only this process sees, gone with this object. Needs root: ask available() before anything is made in
/// the temporary folder (the process gets one of its own by it), and skip the test without.
///
/// Never bind a folder that the test did not make: a temporary folder that is cleaned up through a mount loses what it
/// shows.
class PrivateMounts final
{
public:
    [[nodiscard]] static bool available();

    PrivateMounts();
    PrivateMounts(const PrivateMounts&) = delete;
    PrivateMounts& operator=(const PrivateMounts&) = delete;
    ~PrivateMounts();

    /// A small file system of its own at a folder, which is made. `options` as of mount(8), for example "size=64k".
    void mountTemporary(const QString& folder, const QByteArray& options = "size=64m");
    /// A file system of any kind that needs no device, at a folder that exists.
    void mount(const QByteArray& kind, const QString& folder, const QByteArray& options);
    /// Shows a file or folder in a second place too, which must exist.
    void bind(const QString& from, const QString& to);
    void makeReadOnly(const QString& mountPoint);
    void unmount(const QString& mountPoint);

private:
    QStringList m_mounted;
};

/// Runs `work` as an ordinary user without any privilege, in a process of its own; what it returns comes back (0 to
/// 255). Needs root.
[[nodiscard]] int asOrdinaryUser(const std::function<int()>& work);
/// The same as any other user, of the group with his number.
[[nodiscard]] int asUser(unsigned user, const std::function<int()>& work);

/// The user and group of asOrdinaryUser().
inline constexpr unsigned ordinaryUser = 65534;

/// Gives a path to that user.
void giveToOrdinaryUser(const QString& path);
void giveTo(unsigned user, const QString& path);

} // namespace lapsa::test
