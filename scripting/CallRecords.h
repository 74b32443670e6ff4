// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"
#include "ListService.h"

#include <QList>
#include <QUuid>
#include <QVariantMap>

namespace lapsa {

// The dictionaries of answers; the description of the interface names their keys.

[[nodiscard]] QVariantMap dictionaryOf(const LapsaItem& item);
[[nodiscard]] QVariantMap dictionaryOf(const LapsaRecoveryItem& record);
[[nodiscard]] QVariantMap dictionaryOf(const ListService::AddOutcome& outcome);

/// One for each id, in order. An id without a result is still waited for.
[[nodiscard]] QList<QVariantMap> dictionariesOf(const QList<QUuid>& ids, const QList<RecoveryResult>& results);

/// One for each element.
template <typename T>
[[nodiscard]] QList<QVariantMap> dictionariesOf(const QList<T>& list)
{
    QList<QVariantMap> dictionaries;
    dictionaries.reserve(list.size());
    for (const T& element : list) {
        dictionaries.push_back(dictionaryOf(element));
    }
    return dictionaries;
}

} // namespace lapsa
