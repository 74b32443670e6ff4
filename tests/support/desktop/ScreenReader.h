// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace lapsa::test {

/// A real screen reader (Orca) on the display and the session bus that the environment names, with an accessibility bus
/// of its own. It has no voice: what it says is read from its log. It tells places in lists, as many of its users have
/// it, and does not echo keys. Programs that shall be read are started after it.
class ScreenReader final
{
public:
    ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;
    ~ScreenReader();

    /// All that it has said since it was started.
    [[nodiscard]] QStringList said() const;

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QByteArray m_previousBridge;
    QByteArray m_previousPath;
    std::optional<HelperProcess> m_bus;
    std::optional<HelperProcess> m_orca;
};

} // namespace lapsa::test
