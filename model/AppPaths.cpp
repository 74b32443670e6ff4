// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"

#include "FileSystem.h"
#include "UserFolders.h"

#include <QString>
#include <QStringList>

#include <tuple>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

QString madeFolder(const QString& path)
{
    if (!fileSystem::exists(path)) {
        // Silent on purpose: the path is the result either way, and reading or writing there will report the failure.
        std::ignore = fileSystem::createDirectory(path, fileSystem::Access::OwnerOnly);
    }
    return path;
}

QString dataFolder()
{
    const QStringList folders = userFolders::applicationSupport();
    if (folders.isEmpty()) {
        qFatal("There is no folder for application data");
    }
    return madeFolder(folders.first() + "/Lapsa"_L1);
}

QUrl inDataFolder(QLatin1StringView name)
{
    return QUrl::fromLocalFile(dataFolder() + u'/' + name);
}

} // namespace

QUrl AppPaths::applicationSupportDirectory()
{
    return QUrl::fromLocalFile(dataFolder());
}

QUrl AppPaths::recoveryDirectory()
{
    return QUrl::fromLocalFile(madeFolder(dataFolder() + "/Recovery"_L1));
}

QString AppPaths::keptFilesFolder()
{
    const QString state = userFolders::applicationState();
    return state.isEmpty() ? QString() : state + "/Lapsa"_L1;
}

QUrl AppPaths::settingsURL()
{
    return inDataFolder("settings.json"_L1);
}

QUrl AppPaths::stateURL()
{
    return inDataFolder("state.json"_L1);
}

QUrl AppPaths::recoveryStateURL()
{
    return inDataFolder("recovery.json"_L1);
}

QUrl AppPaths::restoringURL()
{
    return inDataFolder("restoring.json"_L1);
}

QUrl AppPaths::knownPathsURL()
{
    return QUrl::fromLocalFile(userFolders::applicationState() + "/Lapsa/paths.json"_L1);
}

} // namespace lapsa
