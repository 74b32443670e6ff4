// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Spelling.h"

#include "FileSystem.h"

#include <QStringList>

namespace lapsa {

QString foldedSpelling(const QString& text)
{
    return text.normalized(QString::NormalizationForm_C).toCaseFolded();
}

bool spellOneEntry(const QString& folder, const QString& name, const QString& other)
{
    if (name == other) {
        return true;
    }
    bool hasName = false;
    bool hasOther = false;
    const auto listed = fileSystem::forEachName(folder, [&](const QString& found) {
        hasName = hasName || found == name;
        hasOther = hasOther || found == other;
    });
    return !listed || !(hasName && hasOther);
}

bool spellOnePath(const QString& path, const QString& other)
{
    const QStringList steps = path.split(u'/');
    const QStringList otherSteps = other.split(u'/');
    if (steps.size() != otherSteps.size()) {
        return false;
    }
    QString folder;
    for (qsizetype step = 1; step < steps.size(); ++step) {
        if (!spellOneEntry(folder.isEmpty() ? QStringLiteral("/") : folder, steps[step], otherSteps[step])) {
            return false;
        }
        folder += u'/' + steps[step];
    }
    return true;
}

} // namespace lapsa
