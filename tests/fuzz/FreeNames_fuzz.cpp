// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreeNames.h"
#include "FuzzTarget.h"

namespace lapsa::fuzz {

namespace {

void checkName(const QString& name)
{
    demand(!name.isEmpty() && name != u"." && name != u"..", "a variant is a name");
    demand(!name.contains(u'/') && !name.contains(QChar::Null), "a variant stays in its folder");
    demand(name.toUtf8().size() <= maxFileNameBytes, "a variant is no longer than the file system takes");
    demand(name.isValidUtf16(), "no character is cut in two");
}

} // namespace

/// The first byte chooses the number of the variant, the rest is a name.
void run(QByteArrayView input)
{
    if (input.isEmpty()) {
        return;
    }
    QString name = QString::fromUtf8(input.sliced(1));
    name.replace(u'/', u'_').replace(QChar::Null, u'_');
    if (name.isEmpty() || name == u"." || name == u"..") {
        return;
    }
    // 1, 10, 100 …: the room that the number takes is what makes a difference.
    std::int64_t number = 1;
    for (int digits = input.front() % 18; digits > 0; --digits) {
        number *= 10;
    }
    for (const std::int64_t variant : {std::int64_t{0}, number, number + 1}) {
        checkName(fileNameVariant(name, variant));
    }
    demand(fileNameVariant(name, number) != fileNameVariant(name, number + 1), "every number has its own name");
    demand(fileNameVariant(name, 0) == name || name.toUtf8().size() > maxFileNameBytes, "a name that fits is kept");
}

} // namespace lapsa::fuzz
