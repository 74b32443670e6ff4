// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DataOfADay.h"

#include "TemporaryHome.h"

#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

QString inMinutes(int minutes)
{
    return QDateTime::currentDateTimeUtc().addSecs(qint64{minutes} * 60).toString(Qt::ISODate);
}

QJsonObject item(const QString& path, int minutes)
{
    static int count = 0;
    return {{u"addedAt"_s, inMinutes(-1000)},
            {u"displayName"_s, path.section(u'/', -1)},
            {u"expiresAt"_s, inMinutes(minutes)},
            {u"fiveMinuteWarningSent"_s, false},
            {u"id"_s, u"00000000-0000-4000-8000-%1"_s.arg(++count, 12, 10, QChar(u'0'))},
            {u"locked"_s, false},
            {u"path"_s, path}};
}

QJsonObject settingsOf(const TemporaryHome& home)
{
    const QJsonObject rule{{u"applyFileTypeRules"_s, true},
                           {u"createdAt"_s, inMinutes(-2000)},
                           {u"enabled"_s, true},
                           {u"folderPath"_s, home.path(u"watched"_s)},
                           {u"id"_s, u"00000000-0000-4000-8000-000000000002"_s},
                           {u"includeExistingFiles"_s, true},
                           {u"lastScanAt"_s, u"0001-01-01T00:00:00Z"_s},
                           {u"lifespanMinutes"_s, 10080}};
    return {{u"autoCleanFolders"_s, QJsonArray{rule}},
            {u"defaultExpirationMinutes"_s, 120},
            {u"enableExpiryNotifications"_s, true},
            {u"fileTypeRules"_s, QJsonArray()},
            {u"keepPanelOpen"_s, true},
            {u"notifyBeforeMinutes"_s, 5},
            {u"pauseAllCountdowns"_s, false},
            {u"recoveryRetentionHours"_s, 24},
            {u"theme"_s, u"dark"_s},
            {u"useRecoveryWindow"_s, true},
            {u"useTrash"_s, false}};
}

void writeList(const TemporaryHome& home, const QString& name, const QJsonArray& list)
{
    home.writeDataFile(name, QJsonDocument(list).toJson());
}

} // namespace

void makeDataOfADay(const TemporaryHome& home, const QTemporaryDir& otherDisk)
{
    const QString picture = home.makeFile(u"files/picture.png"_s);
    QVERIFY(QImage(300, 300, QImage::Format_RGB32).save(picture));
    QFile other(otherDisk.filePath(u"due.iso"_s));
    QVERIFY(other.open(QIODevice::WriteOnly) && other.write(QByteArray(100'000, 'x')) > 0);
    home.makeFile(u"files/folder/inside.txt"_s);
    home.makeFile(u"watched/new.zip"_s);
    home.makeFile(u"shown/chosen.txt"_s);
    writeList(home, u"state.json"_s,
              {item(home.makeFile(u"files/due.txt"_s), -1), item(other.fileName(), -1),
               item(home.makeFile(u"files/soon.txt"_s), 3), item(picture, 1000),
               item(home.path(u"files/folder"_s), 2000), item(home.path(u"files/gone.txt"_s), 3000)});
    home.writeDataFile(u"Recovery/old.txt"_s, "old\n");
    writeList(home, u"recovery.json"_s,
              {QJsonObject{{u"deletedAt"_s, inMinutes(-2000)},
                           {u"displayName"_s, u"old.txt"_s},
                           {u"id"_s, u"00000000-0000-4000-8000-00000000abcd"_s},
                           {u"originalPath"_s, home.path(u"files/old.txt"_s)},
                           {u"purgeAfter"_s, inMinutes(-1)},
                           {u"recoveryPath"_s, home.dataPath(u"Recovery/old.txt"_s)}}});
    home.writeDataFile(u"settings.json"_s, QJsonDocument(settingsOf(home)).toJson());
}

} // namespace lapsa::test
