// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BenchFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace lapsa::bench {

using namespace Qt::StringLiterals;

namespace {

QString folderOf(const Layout& layout, std::int64_t number)
{
    if (layout.names == Names::Equal) {
        return u"/folder-%1"_s.arg(number);
    }
    return layout.spread == Spread::ManyFolders ? u"/folder-%1"_s.arg(number / 100) : u"/folder"_s;
}

} // namespace

void require(bool condition, const char* what)
{
    if (!condition) {
        qFatal("The benchmark did not do its work: %s", what);
    }
}

QStringList pathsOf(const Layout& layout, const QString& folder)
{
    QStringList paths;
    paths.reserve(layout.count);
    for (std::int64_t number = 0; number < layout.count; ++number) {
        const QString name = layout.names == Names::Equal ? u"report.pdf"_s : u"file-%1.dat"_s.arg(number);
        paths.push_back(folder + folderOf(layout, number) + u'/' + name);
    }
    return paths;
}

void createFiles(const QStringList& paths)
{
    QSet<QString> made;
    for (const QString& path : paths) {
        const QString folder = path.left(path.lastIndexOf(u'/'));
        if (!made.contains(folder)) {
            std::error_code error;
            std::filesystem::create_directories(folder.toStdString(), error);
            require(!error, "making a folder");
            made.insert(folder);
        }
        const int file = ::open(path.toUtf8().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        require(file >= 0, "making a file");
        ::close(file);
    }
}

QList<QUrl> urlsOf(const QStringList& paths)
{
    QList<QUrl> urls;
    urls.reserve(paths.size());
    for (const QString& path : paths) {
        urls.push_back(QUrl::fromLocalFile(path));
    }
    return urls;
}

std::vector<std::string> nativePaths(const QStringList& paths)
{
    std::vector<std::string> native;
    native.reserve(static_cast<std::size_t>(paths.size()));
    for (const QString& path : paths) {
        native.push_back(path.toStdString());
    }
    return native;
}

void createLargeFile(const QString& path, std::int64_t bytes)
{
    constexpr std::size_t step = 1 << 20;
    const std::vector<char> block(step, 'x');
    const int file = ::open(path.toUtf8().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    require(file >= 0, "making a file");
    for (std::int64_t written = 0; written < bytes; written += step) {
        require(::write(file, block.data(), step) == ssize_t(step), "filling a file");
    }
    ::close(file);
}

QString otherFileSystem()
{
    struct stat temporary = {};
    struct stat other = {};
    require(::stat(QDir::tempPath().toUtf8().constData(), &temporary) == 0, "looking at the temporary folder");
    for (const char* const folder : {"/dev/shm", "/var/tmp"}) {
        if (::stat(folder, &other) == 0 && other.st_dev != temporary.st_dev) {
            return QString::fromLatin1(folder);
        }
    }
    require(false, "finding a second file system");
    return {};
}

void removeTree(const QString& folder)
{
    std::error_code error;
    std::filesystem::remove_all(folder.toStdString(), error);
    require(!error, "clearing up");
}

QStringList BenchWorld::addFiles(const Layout& layout)
{
    QStringList paths = pathsOf(layout, world.home.path(u"files"_s));
    createFiles(paths);
    store().addFiles(urlsOf(paths), {.fixedLifespan = 10});
    world.time.settle(); // many files take several turns
    require(store().items().size() == layout.count, "putting the files on countdown");
    return paths;
}

} // namespace lapsa::bench
