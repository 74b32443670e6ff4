// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FuzzTarget.h"
#include "LifespanRules.h"

#include <algorithm>

namespace lapsa::fuzz {

using namespace Qt::StringLiterals;

namespace {

constexpr std::int64_t ruleMinutes = 77;

void checkExtension(const QString& extension)
{
    demand(extension.size() > 1 && extension.startsWith(u'.'), "an extension is more than its full stop");
    demand(extension == extension.toLower(), "an extension is in lower case");
    demand(std::ranges::none_of(extension, [](QChar c) { return c == u',' || c == u';' || c == u' '; }),
           "an extension holds no separator");
}

} // namespace

void run(QByteArrayView input)
{
    const QString text = QString::fromUtf8(input);
    const QStringList extensions = extensionsOf(text);
    demand(extensionsOf(extensions.join(u',')) == extensions, "normalised extensions stay as they are");

    LapsaSettings settings;
    settings.fileTypeRules = {{.extensionsCSV = text, .lifespanMinutes = ruleMinutes}};
    const LifespanRules rules(settings);
    for (const QString& extension : extensions) {
        checkExtension(extension);
        // The extension of a file begins at its last full stop, so that a rule for two of them matches nothing.
        const bool matches = extension.lastIndexOf(u'.') == 0;
        demand(!matches || rules.lifespanFor(u'a' + extension) == ruleMinutes, "a listed extension has its lifespan");
    }
    const std::int64_t minutes = rules.lifespanFor(text);
    demand(minutes == ruleMinutes || minutes == settings.defaultExpirationMinutes,
           "a name has the lifespan of the rule or the default");
}

} // namespace lapsa::fuzz
