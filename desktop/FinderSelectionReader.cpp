// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FinderSelectionReader.h"

#include "FileManagerSelection.h"
#include "SystemLog.h"

#include <cstdlib>
#include <optional>
#include <variant>

namespace lapsa {

using namespace Qt::StringLiterals;

QList<QUrl> FinderSelectionReader::selectedFileURLs(FileManagerSelection& selection,
                                                    const std::function<void()>& willStop)
{
    const FileManagerSelection::Answer answer = selection.ask();
    QList<QUrl> urls;
    if (const auto* const failure = std::get_if<FileManagerSelection::Failure>(&answer)) {
        systemLog(u"Lapsa Finder selection error: "_s + failure->description);
    } else if (const auto* const path = std::get_if<QString>(&answer)) {
        urls.push_back(QUrl::fromLocalFile(*path));
    } else if (const auto* const paths = std::get_if<FileManagerSelection::Paths>(&answer)) {
        if (paths->isEmpty()) {
            willStop();
            std::abort();
        }
        for (const std::optional<QString>& entry : *paths) {
            if (entry) {
                urls.push_back(QUrl::fromLocalFile(*entry));
            }
        }
    }
    return urls;
}

} // namespace lapsa
