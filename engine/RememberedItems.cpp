// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RememberedItems.h"

#include <QHash>

#include <cstddef>
#include <utility>

namespace lapsa {

namespace {

bool isSame(const LapsaItem& one, const LapsaItem& other)
{
    // An item that was copied from the list shares its texts.
    const bool shared = one.id.constData() == other.id.constData() && one.path.constData() == other.path.constData();
    return (shared && one.id.size() == other.id.size() && one.path.size() == other.path.size()) ||
           (one.id == other.id && one.path == other.path);
}

} // namespace

std::vector<qsizetype> positionsOfRemembered(const QList<LapsaItem>& list, const QList<LapsaItem>& remembered)
{
    std::vector<qsizetype> positions(std::size_t(list.size()), -1);
    qsizetype next = 0;
    for (qsizetype item = 0; item < list.size() && next < remembered.size(); ++item) {
        if (isSame(list[item], remembered[next])) {
            positions[std::size_t(item)] = next++;
        }
    }
    if (next == remembered.size()) {
        return positions;
    }
    // The next one has left the list, or comes earlier there.
    QHash<std::pair<QString, QString>, qsizetype> others;
    others.reserve(remembered.size() - next);
    for (; next < remembered.size(); ++next) {
        others.insert({remembered[next].id, remembered[next].path}, next);
    }
    for (qsizetype item = 0; item < list.size(); ++item) {
        qsizetype& position = positions[std::size_t(item)];
        if (position < 0) {
            position = others.value({list[item].id, list[item].path}, -1);
        }
    }
    return positions;
}

} // namespace lapsa
