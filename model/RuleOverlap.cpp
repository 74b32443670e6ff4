// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RuleOverlap.h"

#include "LifespanRules.h"

namespace lapsa {

QList<TakenExtension> takenExtensions(const QList<LapsaFileTypeRule>& rules, qsizetype position)
{
    if (!rules.at(position).enabled) {
        return {};
    }
    QHash<QString, qsizetype> earlier;
    for (qsizetype rule = 0; rule < position; ++rule) {
        if (!rules.at(rule).enabled) {
            continue;
        }
        for (const QString& extension : extensionsOf(rules.at(rule).extensionsCSV)) {
            if (!earlier.contains(extension)) {
                earlier.insert(extension, rule);
            }
        }
    }
    QList<TakenExtension> taken;
    for (const QString& extension : extensionsOf(rules.at(position).extensionsCSV)) {
        const auto found = earlier.constFind(extension);
        if (found != earlier.cend()) {
            taken.push_back({.extension = extension, .rule = *found});
            earlier.erase(found);
        }
    }
    return taken;
}

} // namespace lapsa
