// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RuleTexts.h"

#include "Localized.h"
#include "RuleOverlap.h"
#include "TextStyle.h"

#include <QMap>
#include <QStringList>

#include <algorithm>

namespace lapsa::ruleTexts {

using namespace Qt::StringLiterals;

QString takenExtensions(const QList<LapsaFileTypeRule>& rules, const QUuid& id)
{
    const auto rule = std::ranges::find(rules, id, &LapsaFileTypeRule::id);
    if (rule == rules.end()) {
        return {};
    }
    QMap<qsizetype, QStringList> byRule;
    for (const TakenExtension& taken : lapsa::takenExtensions(rules, rule - rules.begin())) {
        byRule[taken.rule].push_back(taken.extension);
    }
    QStringList lines;
    for (const auto& [earlier, extensions] : byRule.asKeyValueRange()) {
        lines.push_back(Localized::text(u"Already in “%1” above: %2"_s, u"Già in «%1», più in alto: %2"_s)
                            .arg(singleLine(rules.at(earlier).extensionsCSV), singleLine(extensions.join(u", "_s))));
    }
    return lines.join(u'\n');
}

QString position(qsizetype position, qsizetype count)
{
    return Localized::text(u"Rule %1 of %2"_s, u"Regola %1 di %2"_s)
        .arg(Localized::number(position + 1), Localized::number(count));
}

QString apply(qsizetype count)
{
    return count == 1 ? Localized::text(u"Apply to 1 listed item"_s, u"Applica a 1 elemento in lista"_s)
                      : Localized::text(u"Apply to %1 listed items"_s, u"Applica a %1 elementi in lista"_s)
                            .arg(Localized::number(count));
}

QString applied(qsizetype count)
{
    return count == 1 ? Localized::text(u"1 item has the new time"_s, u"1 elemento ha il nuovo tempo"_s)
                      : Localized::text(u"%1 items have the new time"_s, u"%1 elementi hanno il nuovo tempo"_s)
                            .arg(Localized::number(count));
}

} // namespace lapsa::ruleTexts
