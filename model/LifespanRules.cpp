// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LifespanRules.h"

#include "FileName.h"

#include <algorithm>

namespace lapsa {

namespace {

std::int64_t bounded(std::int64_t minutes)
{
    return std::clamp(minutes, minLifespanMinutes, maxLifespanMinutes);
}

bool isSeparator(QChar character)
{
    return character == u',' || character == u';' || character == u' ';
}

QString normalized(const QString& piece)
{
    const QString trimmed = piece.trimmed();
    return trimmed.startsWith(u'.') ? trimmed.toLower() : u'.' + trimmed.toLower();
}

} // namespace

QStringList extensionsOf(const QString& extensionsCSV)
{
    QStringList extensions;
    const auto* begin = extensionsCSV.cbegin();
    while (begin != extensionsCSV.cend()) {
        const auto* const end = std::find_if(begin, extensionsCSV.cend(), isSeparator);
        const QString extension = normalized(QString(begin, end - begin));
        // An empty piece has become a single dot.
        if (extension.size() > 1) {
            extensions += extension;
        }
        begin = end == extensionsCSV.cend() ? end : end + 1;
    }
    return extensions;
}

LifespanRules::LifespanRules(const LapsaSettings& settings)
    : m_defaultLifespan(bounded(settings.defaultExpirationMinutes))
{
    for (const LapsaFileTypeRule& rule : settings.fileTypeRules) {
        if (!rule.enabled) {
            continue;
        }
        for (const QString& extension : extensionsOf(rule.extensionsCSV)) {
            if (!m_byExtension.contains(extension)) {
                m_byExtension.insert(extension, {.rule = rule.id, .minutes = bounded(rule.lifespanMinutes)});
            }
        }
    }
}

std::int64_t LifespanRules::lifespanFor(const QString& fileName) const
{
    const auto applying = applyingTo(fileName);
    return applying ? applying->minutes : m_defaultLifespan;
}

std::optional<QUuid> LifespanRules::ruleFor(const QString& fileName) const
{
    const auto applying = applyingTo(fileName);
    return applying ? std::optional(applying->rule) : std::nullopt;
}

std::optional<LifespanRules::Applying> LifespanRules::applyingTo(const QString& fileName) const
{
    const QString extension = FileName::of(fileName).extension;
    const auto applying =
        extension.isEmpty() ? m_byExtension.cend() : m_byExtension.constFind(u'.' + extension.toLower());
    return applying == m_byExtension.cend() ? std::nullopt : std::optional(*applying);
}

} // namespace lapsa
