// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "KnownPaths.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <tuple>
#include <utility>

namespace lapsa::fileSystem {

using namespace Qt::StringLiterals;

namespace {

/// Device numbers are assigned anew at each boot.
QString currentBoot()
{
    const Result<QByteArray> boot = fileSystem::read(u"/proc/sys/kernel/random/boot_id"_s);
    return boot ? QString::fromLatin1(boot.value().trimmed()) : QString();
}

/// As text: a JSON number holds 53 bits.
template <typename Number>
QString text(Number number)
{
    return QString::number(number);
}

QJsonObject encoded(const PathStep& step)
{
    return {{u"path"_s, QString::fromLatin1(step.path.toPercentEncoding("/"))},
            {u"device"_s, text(step.device)},
            {u"inode"_s, text(step.inode)},
            {u"born"_s, text(step.born)}};
}

PathStep decoded(const QJsonObject& step)
{
    return {.path = QByteArray::fromPercentEncoding(step[u"path"_s].toString().toLatin1()),
            .device = step[u"device"_s].toString().toULongLong(),
            .inode = step[u"inode"_s].toString().toULongLong(),
            .born = step[u"born"_s].toString().toLongLong()};
}

/// Equal steps have equal keys, to be stored once: most paths of a list are in few folders.
QByteArray keyOf(const PathSteps& steps)
{
    QJsonArray list;
    for (const PathStep& step : steps) {
        list.append(encoded(step));
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

} // namespace

KnownPaths::KnownPaths(QString file)
    : m_file(std::move(file))
{
    read();
}

void KnownPaths::read()
{
    const QFileInfo file(m_file);
    // A write also removes what a kill during an earlier one left behind, so ask for one. A missing folder holds
    // nothing.
    std::ignore = forEachName(file.path(), [&](const QString& name) {
        m_changed = m_changed || (name != file.fileName() && name.contains(file.fileName()));
    });
    const Result<QByteArray> bytes = fileSystem::read(m_file);
    const QJsonObject document = bytes ? QJsonDocument::fromJson(bytes.value()).object() : QJsonObject();
    const bool sameBoot = document[u"boot"_s].toString() == currentBoot();
    for (const QJsonValue way : document[u"ways"_s].toArray()) {
        PathSteps steps;
        for (const QJsonValue step : way[u"steps"_s].toArray()) {
            steps.push_back(decoded(step.toObject()));
            steps.back().device = sameBoot ? steps.back().device : 0;
        }
        for (const QJsonValue path : way[u"paths"_s].toArray()) {
            m_steps.insert(path.toString(), steps);
        }
    }
}

bool KnownPaths::takeChanges()
{
    return std::exchange(m_changed, false);
}

QByteArray KnownPaths::content() const
{
    QHash<QByteArray, QJsonArray> pathsByWay;
    for (const auto& [path, steps] : m_steps.asKeyValueRange()) {
        pathsByWay[keyOf(steps)].append(path);
    }
    QJsonArray ways;
    for (const auto& [steps, paths] : pathsByWay.asKeyValueRange()) {
        ways.append(QJsonObject{{u"steps"_s, QJsonDocument::fromJson(steps).array()}, {u"paths"_s, paths}});
    }
    const QJsonObject document{{u"boot"_s, currentBoot()}, {u"ways"_s, ways}};
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

} // namespace lapsa::fileSystem
