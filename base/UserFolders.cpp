// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UserFolders.h"

#include "Everlasting.h"
#include "SharedAnswer.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUtf8StringView>

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace lapsa::userFolders {

using namespace Qt::StringLiterals;

namespace {

/// The cleaned path; empty if it is not absolute or not valid UTF-8.
QString usablePath(const QByteArray& path)
{
    const bool usable = path.startsWith('/') && QUtf8StringView(path.constData(), path.size()).isValidUtf8();
    return usable ? QDir::cleanPath(QString::fromUtf8(path)) : QString();
}

QByteArray homeOfUser(uid_t user)
{
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    while (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    return found != nullptr && found->pw_dir != nullptr ? QByteArray(found->pw_dir) : QByteArray();
}

/// The user database may be remote (a directory service): it is asked only once per user.
QString homeInDatabase()
{
    static auto& known = makeEverlasting<SharedAnswer<uid_t, QString>>();
    return known.to(::getuid(), [](uid_t user) { return usablePath(homeOfUser(user)); });
}

} // namespace

QStringList applicationSupport()
{
    if (const QString dataHome = usablePath(qgetenv("XDG_DATA_HOME")); !dataHome.isEmpty()) {
        return {dataHome};
    }
    const QStringList homes = home();
    return homes.isEmpty() ? QStringList() : QStringList{QDir::cleanPath(homes.first() + u"/.local/share"_s)};
}

QString applicationState()
{
    if (const QString stateHome = usablePath(qgetenv("XDG_STATE_HOME")); !stateHome.isEmpty()) {
        return stateHome;
    }
    const QStringList homes = home();
    return homes.isEmpty() ? QString() : QDir::cleanPath(homes.first() + u"/.local/state"_s);
}

QString downloads()
{
    const QFileInfo folder(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    const QStringList homes = home();
    const bool isHome = std::ranges::any_of(homes, [&folder](const QString& path) {
        return QFileInfo(path).canonicalFilePath() == folder.canonicalFilePath();
    });
    return folder.isDir() && !isHome ? QDir::cleanPath(folder.filePath()) : QString();
}

QStringList home()
{
    QStringList homes;
    for (const QString& path : {usablePath(qgetenv("HOME")), homeInDatabase()}) {
        if (!path.isEmpty() && !homes.contains(path)) {
            homes.push_back(path);
        }
    }
    return homes;
}

} // namespace lapsa::userFolders
