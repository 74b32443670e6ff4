// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WorkTexts.h"

#include "Localized.h"

#include <algorithm>

namespace lapsa::workTexts {

using namespace Qt::StringLiterals;

namespace {

constexpr double wholePercent = 100;

QString movingText(const ItemWork& work)
{
    const std::optional<double> progress = progressOf(work);
    // Rounded down: "100 %" means that everything is copied.
    return progress ? Localized::text(u"Moving… %1 %"_s, u"Spostamento… %1 %"_s)
                          .arg(static_cast<int>(*progress * wholePercent))
                    : Localized::text(u"Moving…"_s, u"Spostamento…"_s);
}

QString removingText(std::int64_t entries)
{
    if (entries <= 0) {
        return Localized::text(u"Removing…"_s, u"Rimozione…"_s);
    }
    return entries == 1
               ? Localized::text(u"Removing… 1 file"_s, u"Rimozione… 1 file"_s)
               : Localized::text(u"Removing… %1 files"_s, u"Rimozione… %1 file"_s).arg(Localized::number(entries));
}

QString stoppedText(std::int64_t filesLeft)
{
    if (filesLeft < 0) {
        return Localized::text(u"Stopped: files are left"_s, u"Interrotta: restano dei file"_s);
    }
    if (filesLeft == 1) {
        return Localized::text(u"Stopped: 1 file left"_s, u"Interrotta: resta 1 file"_s);
    }
    // The longer Italian text would hide a part of a large number.
    constexpr std::int64_t large = 100'000;
    const QString italian = filesLeft >= large ? u"Restano %1 file"_s : u"Interrotta: restano %1 file"_s;
    return Localized::text(u"Stopped: %1 files left"_s, italian).arg(Localized::number(filesLeft));
}

} // namespace

QString textFor(const ItemWork& work)
{
    switch (work.kind) {
    case ItemWork::Kind::Moving:
        return movingText(work);
    case ItemWork::Kind::Removing:
        return removingText(work.done);
    case ItemWork::Kind::WaitingForDisk:
        return Localized::waitingForDisk();
    case ItemWork::Kind::Stopped:
        return stoppedText(work.done);
    }
    return {};
}

std::optional<double> progressOf(const ItemWork& work)
{
    if (work.kind == ItemWork::Kind::WaitingForDisk || work.total <= 0) {
        return std::nullopt;
    }
    // A file may grow while it is copied.
    return std::clamp(static_cast<double>(work.done) / static_cast<double>(work.total), 0.0, 1.0);
}

} // namespace lapsa::workTexts
