// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ComingsAndGoings.h"
#include "JSONEncoder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace lapsa::test {

using namespace Qt::StringLiterals;

ComingsAndGoings::Serial ComingsAndGoings::serialIn(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toInt() : 0;
}

void ComingsAndGoings::compareWithDisk()
{
    const QString trash = m_world.home.path(u".local/share/Trash"_s);
    QHash<QString, Serial> places;
    QSet<Serial> trashed;
    qsizetype trashRecords = 0;
    QDirIterator all(m_world.home.path({}), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next();
        if (path.startsWith(trash + u"/info/"_s)) {
            ++trashRecords;
        } else if (path.startsWith(trash + u"/files/"_s)) {
            trashed.insert(serialIn(path));
        } else if (QFileInfo(path).path() != m_world.home.dataPath()) {
            places[path] = serialIn(path);
        }
    }
    require(places == m_places, u"every file is at its one place"_s);
    require(trashed == m_trashed && trashRecords == m_trashed.size(), u"the Trash holds what was trashed"_s);
    require(m_world.home.names(u".local/share/Lapsa"_s) ==
                QStringList({u"Recovery"_s, u"recovery.json"_s, u"settings.json"_s, u"state.json"_s}),
            u"nothing is left over in the data folder"_s);
}

void ComingsAndGoings::compareWithSavedLists()
{
    const LapsaStore& store = m_world.store();
    require(m_world.home.dataFile(u"state.json"_s) == JSONEncoder::lapsa().encode(store.items()),
            u"the items are saved"_s);
    require(m_world.home.dataFile(u"recovery.json"_s) == JSONEncoder::lapsa().encode(store.recoveryItems()),
            u"the records are saved"_s);
}

} // namespace lapsa::test
