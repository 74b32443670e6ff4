// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LatestLook.h"

#include <QObject>

namespace lapsa {

/// What is at the path that the user typed last. A lane looks; this object accesses no disk.
class TypedPath final : public QObject
{
    Q_OBJECT

public:
    /// `lanes` must outlive this object.
    TypedPath(Lanes& lanes, QObject* parent);

    /// Looks at an absolute path, again if it was looked at before; at nothing if it is empty. answered() follows; with
    /// lanes that run at once, before this returns.
    void lookAt(const QString& path);

    /// The path last asked about; empty if there was nothing, and until that is known.
    [[nodiscard]] const QString& found() const { return m_found; }

    /// Whether found() is a folder, or a link to one.
    [[nodiscard]] bool isFolder() const { return m_isFolder; }

signals:
    void answered();

private:
    void note(const QString& found, bool isFolder);

    QString m_found;
    bool m_isFolder = false;
    LatestLook m_look;
};

} // namespace lapsa
