// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FolderTexts.h"

#include "DurationFormatter.h"
#include "Localized.h"

namespace lapsa::folderTexts {

using namespace Qt::StringLiterals;

namespace {

QString filesHere(qsizetype files)
{
    if (files > mostFiles) {
        return Localized::text(u"More than %1 files here"_s, u"Più di %1 file qui"_s).arg(mostFiles);
    }
    return files == 1 ? Localized::text(u"1 file here"_s, u"1 file qui"_s)
                      : Localized::text(u"%1 files here"_s, u"%1 file qui"_s).arg(files);
}

/// How many of them go, for example "7 of them" / "7".
QString whoGoes(const watchedFolder::Outlook& outlook)
{
    if (outlook.present == 1) {
        return Localized::text(u"it"_s, {});
    }
    if (outlook.taken == outlook.present) {
        return Localized::text(u"all of them"_s, u"tutti"_s);
    }
    return Localized::text(u"%1 of them"_s, u"%1"_s).arg(outlook.taken);
}

QString goes(qsizetype files, Certainty certainty)
{
    if (certainty == Certainty::Would) {
        return Localized::text(u"would go"_s, files == 1 ? u"verrebbe eliminato"_s : u"verrebbero eliminati"_s);
    }
    return Localized::text(u"will go"_s, files == 1 ? u"verrà eliminato"_s : u"verranno eliminati"_s);
}

} // namespace

QString existingFiles(const watchedFolder::Outlook& outlook, Certainty certainty)
{
    const QString here = filesHere(outlook.present);
    if (outlook.present == 0) {
        return Localized::text(u"No files here."_s, u"Nessun file qui."_s);
    }
    if (outlook.taken == 0) {
        return outlook.present == 1
                   ? Localized::text(u"%1, on countdown."_s, u"%1, con il conto alla rovescia."_s).arg(here)
                   : Localized::text(u"%1, all on countdown."_s, u"%1, tutti con il conto alla rovescia."_s).arg(here);
    }
    const QString who = whoGoes(outlook);
    const QString what = who.isEmpty() ? goes(outlook.taken, certainty) : who + u' ' + goes(outlook.taken, certainty);
    const QString when = DurationFormatter::compact(outlook.shortestMinutes);
    return outlook.shortestMinutes == outlook.longestMinutes
               ? Localized::text(u"%1, %2 in %3."_s, u"%1, %2 tra %3."_s).arg(here, what, when)
               : Localized::text(u"%1, %2, the first in %3."_s, u"%1, %2, il primo tra %3."_s).arg(here, what, when);
}

QString byTheRules(std::int64_t defaultMinutes)
{
    return Localized::text(u"By the rules; other files %1."_s, u"Secondo le regole; altri file %1."_s)
        .arg(DurationFormatter::compact(defaultMinutes));
}

} // namespace lapsa::folderTexts
