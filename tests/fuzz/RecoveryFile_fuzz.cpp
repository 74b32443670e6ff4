// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONDocument.h"
#include "LapsaRecoveryItem.h"

namespace lapsa::fuzz {

using namespace Qt::StringLiterals;

void run(QByteArrayView input)
{
    const QByteArray bytes = input.toByteArray();
    const auto records = checkDocument(
        bytes, [](const QByteArray& document) { return JSONDecoder::lapsa().decodeList<LapsaRecoveryItem>(document); });
    if (!records) {
        return;
    }
    if (const auto document = readOtherwise(bytes)) {
        demand(document->array().size() == records->size(), "every record of the file is read");
        demand(haveKeys(document->array(), {u"deletedAt"_s, u"displayName"_s, u"id"_s, u"originalPath"_s,
                                            u"purgeAfter"_s, u"recoveryPath"_s}),
               "every field of a record is there");
    }
}

} // namespace lapsa::fuzz
