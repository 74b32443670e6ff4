// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "InstalledTree.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 120'000;

void install(const QString& prefix, const QString& stage)
{
    QProcess cmake;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DESTDIR"_s, stage);
    cmake.setProcessEnvironment(environment);
    cmake.start(QStringLiteral(LAPSA_CMAKE),
                {u"--install"_s, QStringLiteral(LAPSA_BUILD_FOLDER), u"--prefix"_s, prefix});
    if (!cmake.waitForFinished(patience) || cmake.exitCode() != 0) {
        qFatal("cannot install: %s", cmake.readAllStandardError().constData());
    }
}

} // namespace

InstalledTree::InstalledTree(const QString& name)
    : m_folder(std::make_unique<QTemporaryDir>())
    , m_root(m_folder->filePath(name))
{
    install(m_root, {});
}

InstalledTree::InstalledTree(Staged /*tag*/, const QString& prefix)
    : m_folder(std::make_unique<QTemporaryDir>())
    , m_root(m_folder->path())
{
    install(prefix, m_root);
}

InstalledTree InstalledTree::stagedFor(const QString& prefix)
{
    return {Staged(), prefix};
}

QString InstalledTree::path(const QString& relative) const
{
    return QDir(m_root).filePath(relative);
}

QStringList InstalledTree::files() const
{
    QStringList files;
    QDirIterator all(m_root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        files.push_back(QDir(m_root).relativeFilePath(all.next()));
    }
    files.sort();
    return files;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

DesktopGroups groupsOf(const QString& path)
{
    DesktopGroups groups;
    QString group;
    for (const QString& line : QString::fromUtf8(contentOf(path)).split(u'\n')) {
        if (line.startsWith(u'[')) {
            group = line.sliced(1, line.size() - 2);
        } else if (const qsizetype equals = line.indexOf(u'='); equals > 0 && !line.startsWith(u'#')) {
            groups[group][line.first(equals)] = line.sliced(equals + 1);
        }
    }
    return groups;
}

Outcome outcomeOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(patience)) {
        return {.code = -1, .output = process.errorString().toUtf8()};
    }
    return {.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            .output = process.readAll()};
}

} // namespace lapsa::test
