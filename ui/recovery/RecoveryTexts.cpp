// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryTexts.h"

#include "DurationFormatter.h"
#include "FileName.h"
#include "Localized.h"
#include "UserFolders.h"

#include <algorithm>
#include <cmath>

namespace lapsa::recoveryTexts {

using namespace Qt::StringLiterals;

namespace {

QString withSize(const QString& text, std::optional<std::int64_t> bytes)
{
    return bytes ? text + u", "_s + Localized::dataSize(*bytes) : text;
}

} // namespace

QString shortPath(const QString& path)
{
    for (const QString& home : userFolders::home()) {
        if (path == home) {
            return u"~"_s;
        }
        if (home.size() > 1 && path.startsWith(home + u'/')) {
            return u'~' + path.mid(home.size());
        }
    }
    return path;
}

QString originText(const LapsaRecoveryItem& record, bool withoutRecord)
{
    const QString folder = shortPath(parentPath(record.originalPath));
    return (withoutRecord ? Localized::text(u"comes back to %1"_s, u"torna in %1"_s)
                          : Localized::text(u"from %1"_s, u"da %1"_s))
        .arg(folder);
}

QString remainingText(const LapsaRecoveryItem& record, bool withoutRecord, TimePoint now)
{
    if (withoutRecord) {
        return Localized::text(u"kept until you take it"_s, u"resta finché non lo riprendi"_s);
    }
    const double seconds = secondsBetween(now, record.purgeAfter);
    if (seconds <= 0) {
        return Localized::text(u"removed soon"_s, u"rimosso a breve"_s);
    }
    const auto minutes = static_cast<std::int64_t>(std::ceil(seconds / static_cast<double>(secondsPerMinute)));
    return Localized::text(u"removed in %1"_s, u"rimosso tra %1"_s).arg(DurationFormatter::compact(minutes));
}

QString countText(qsizetype files, std::optional<std::int64_t> bytes)
{
    return withSize(Localized::fileCount(files), bytes);
}

QString selectionText(qsizetype files, std::optional<std::int64_t> bytes)
{
    const QString selected = Localized::text(u"%1 selected"_s, files == 1 ? u"%1 selezionato"_s : u"%1 selezionati"_s);
    return withSize(selected.arg(Localized::number(files)), bytes);
}

QString hitsText(qsizetype hits, qsizetype files)
{
    return Localized::text(u"%1 of %2"_s, u"%1 di %2"_s).arg(Localized::number(hits), Localized::fileCount(files));
}

} // namespace lapsa::recoveryTexts
