// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDocument.h"
#include "LapsaItem.h"

namespace lapsa::fuzz {

using namespace Qt::StringLiterals;

void run(QByteArrayView input)
{
    const QByteArray bytes = input.toByteArray();
    const auto items = checkDocument(
        bytes, [](const QByteArray& document) { return JSONDecoder::lapsa().decodeList<LapsaItem>(document); });
    if (!items) {
        return;
    }
    for (const LapsaItem& item : *items) {
        demand(item.remainingSeconds(item.addedAt) >= 0, "the time that remains is never negative");
        demand(item.isExpired(item.expiresAt), "an item expires at its time");
    }
    if (const auto document = readOtherwise(bytes)) {
        demand(document->array().size() == items->size(), "every item of the file is read");
        demand(haveKeys(document->array(), {u"addedAt"_s, u"displayName"_s, u"expiresAt"_s, u"fiveMinuteWarningSent"_s,
                                            u"id"_s, u"locked"_s, u"path"_s}),
               "every field of an item is there");
    }
}

} // namespace lapsa::fuzz
