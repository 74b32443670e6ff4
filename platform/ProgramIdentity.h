// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// How the program identifies itself to the desktop.
struct ProgramIdentity
{
    /// A reverse domain name such as "org.example.Viewer": its name on the session bus and the name of its desktop
    /// entry.
    QString id;
    /// The name shown to users.
    QString name;
    /// The identifier of the tray icon, in lower-case Latin letters.
    QString shortName;
    /// The folder of the program's drawings, such as ":/viewer".
    QString drawings;
    /// A folder with icon themes that other programs can read, with the icons "ID-symbolic" and "ID-open-symbolic";
    /// empty if there is none.
    QString iconThemes = {};

    /// The object path on the session bus: "/org/example/Viewer" (Desktop Entry Specification, "D-Bus Activation").
    [[nodiscard]] QString objectPath() const { return u'/' + QString(id).replace(u'.', u'/').replace(u'-', u'_'); }
};

} // namespace lapsa
