// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// Who the program is to the desktop.
struct ProgramIdentity
{
    /// A reverse domain name such as "org.example.Viewer": the name on the session bus and of the desktop entry.
    QString id;
    /// The name that users read.
    QString name;
    /// Lower-case Latin letters: the identifier of the tray icon.
    QString shortName;
    /// The folder that holds the program's drawings, such as ":/viewer".
    QString drawings;

    /// The object on the session bus: "/org/example/Viewer" (Desktop Entry Specification, "D-Bus Activation").
    [[nodiscard]] QString objectPath() const { return u'/' + QString(id).replace(u'.', u'/').replace(u'-', u'_'); }
};

} // namespace lapsa
