// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileName.h"
#include "FileSystem.h"

#include <QSet>
#include <QString>
#include <QStringView>

namespace lapsa {

/// Folders that have gone, with everything in them.
class GoneFolders final
{
public:
    /// `folders` are standardised, and outlive this object.
    explicit GoneFolders(const QSet<QString>& folders)
        : m_folders(folders)
    {}

    /// Whether the path leads into one of them.
    [[nodiscard]] bool hold(const QString& path)
    {
        if (m_folders.isEmpty()) {
            return false;
        }
        // Most items are in the same folder as the one before.
        const qsizetype slash = path.lastIndexOf(u'/');
        const QStringView name = QStringView(path).mid(slash + 1);
        const bool isPlain = !name.isEmpty() && name != u"." && name != u"..";
        const QStringView folder = QStringView(path).left(slash);
        if (isPlain && !m_lastFolder.isNull() && folder == m_lastFolder) {
            return m_lastAnswer;
        }
        const bool answer = findAbove(fileSystem::standardizedPath(path).value_or(QString()));
        if (isPlain) {
            m_lastFolder = folder.toString();
            m_lastAnswer = answer;
        }
        return answer;
    }

private:
    [[nodiscard]] bool findAbove(const QString& path) const
    {
        for (QString folder = parentPath(path); folder.size() > 1; folder = parentPath(folder)) {
            if (m_folders.contains(folder)) {
                return true;
            }
        }
        return false;
    }

    const QSet<QString>& m_folders;
    QString m_lastFolder;
    bool m_lastAnswer = false;
};

} // namespace lapsa
