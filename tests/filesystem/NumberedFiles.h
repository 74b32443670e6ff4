// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TemporaryHome.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace lapsa::test {

/// A home with files in the folder "from", named by their numbers and holding them, and the empty folder "to".
struct NumberedFiles final
{
    /// More than share one opening of a folder, several times.
    static constexpr int count = 100;

    NumberedFiles()
    {
        home.makeFolder(QStringLiteral("to"));
        for (int number = 0; number < count; ++number) {
            home.makeFile(QStringLiteral("from/%1").arg(number), QByteArray::number(number));
        }
    }

    [[nodiscard]] QString from(int number) const { return home.path(QStringLiteral("from/%1").arg(number)); }

    [[nodiscard]] QString to(int number) const { return home.path(QStringLiteral("to/%1").arg(number)); }

    [[nodiscard]] QStringList allPaths() const
    {
        QStringList paths;
        for (int number = 0; number < count; ++number) {
            paths.push_back(from(number));
        }
        return paths;
    }

    const TemporaryHome home;
};

} // namespace lapsa::test
