// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileName.h"

namespace lapsa {

FileName FileName::of(const QString& name)
{
    const qsizetype stop = name.lastIndexOf(u'.');
    if (stop <= 0 || stop == name.size() - 1) {
        return {.base = name, .extension = {}};
    }
    return {.base = name.left(stop), .extension = name.mid(stop + 1)};
}

QString lastPathComponent(const QString& path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString parentPath(const QString& path)
{
    return path.left(qMax(path.lastIndexOf(u'/'), 1));
}

} // namespace lapsa
