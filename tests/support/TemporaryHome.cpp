// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

void putBack(const char* name, const QByteArray& value)
{
    if (value.isNull()) {
        qunsetenv(name);
    } else {
        qputenv(name, value);
    }
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) || file.write(content) < 0) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

} // namespace

TemporaryHome::TemporaryHome()
    : m_home(qEnvironmentVariableIsSet("HOME") ? qgetenv("HOME") : QByteArray())
    , m_dataHome(qEnvironmentVariableIsSet("XDG_DATA_HOME") ? qgetenv("XDG_DATA_HOME") : QByteArray())
    , m_stateHome(qEnvironmentVariableIsSet("XDG_STATE_HOME") ? qgetenv("XDG_STATE_HOME") : QByteArray())
{
    if (!m_folder.isValid()) {
        qFatal("no temporary folder");
    }
    qputenv("HOME", m_folder.path().toUtf8());
    qputenv("XDG_DATA_HOME", path(u".local/share"_s).toUtf8());
    qputenv("XDG_STATE_HOME", path(u".local/state"_s).toUtf8());
}

TemporaryHome::~TemporaryHome()
{
    putBack("HOME", m_home);
    putBack("XDG_DATA_HOME", m_dataHome);
    putBack("XDG_STATE_HOME", m_stateHome);
}

QString TemporaryHome::path(const QString& relative) const
{
    return m_folder.filePath(relative);
}

QString TemporaryHome::dataPath(const QString& relative) const
{
    const QString folder = path(u".local/share/Lapsa"_s);
    return relative.isEmpty() ? folder : folder + u'/' + relative;
}

QString TemporaryHome::makeFile(const QString& relative, const QByteArray& content) const
{
    writeFile(path(relative), content);
    return path(relative);
}

QString TemporaryHome::makeFolder(const QString& relative) const
{
    if (!QDir().mkpath(path(relative))) {
        qFatal("cannot make %s", qPrintable(relative));
    }
    return path(relative);
}

void TemporaryHome::writeDataFile(const QString& name, const QByteArray& content) const
{
    writeFile(dataPath(name), content);
}

QByteArray TemporaryHome::dataFile(const QString& name) const
{
    QFile file(dataPath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList TemporaryHome::names(const QString& relative) const
{
    return QDir(path(relative))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace lapsa::test
