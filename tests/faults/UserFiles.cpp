// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UserFiles.h"

#include "FileTree.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Different for every path, and the same for the same.
QByteArray contentFor(const QByteArray& path, int size)
{
    QByteArray content;
    content.reserve(size + 64);
    for (int block = 0; content.size() < size; ++block) {
        const QByteArray seed = path + QByteArray::number(block);
        content += QCryptographicHash::hash(seed, QCryptographicHash::Sha512);
    }
    content.truncate(size);
    return content;
}

void setAttributes(const QByteArray& path, int number)
{
    constexpr time_t longAgo = 1'400'000'000;
    const timespec time{.tv_sec = longAgo + number, .tv_nsec = 123'456'789};
    const timespec times[] = {time, time};
    ::utimensat(AT_FDCWD, path.constData(), times, AT_SYMLINK_NOFOLLOW);
}

void makeRaw(const QByteArray& path, int size)
{
    makeRawFile(path, contentFor(path, size));
    ::chmod(path.constData(), 0640);
    ::setxattr(path.constData(), "user.lapsa", "mine", 4, 0); // where the file system keeps such
    setAttributes(path, size);
}

} // namespace

void makeUserFile(const QString& path, int size)
{
    QDir().mkpath(QFileInfo(path).path());
    makeRaw(path.toUtf8(), size);
}

void makeUserFolder(const QString& path)
{
    constexpr int largeSize = 150'000;
    const QByteArray top = path.toUtf8();
    QDir().mkpath(path + u"/sub/deep"_s);
    QDir().mkpath(path + u"/empty"_s);
    makeRaw(top + "/readme.txt", 700);
    makeRaw(top + "/large", largeSize);
    makeRaw(top + "/hole", 1);
    if (::truncate((top + "/hole").constData(), largeSize) != 0) {
        qFatal("no hole in %s", top.constData());
    }
    setAttributes(top + "/hole", 1);
    makeRaw(top + "/sub/deep/note.txt", 20);
    makeRaw(top + "/sub/" + QByteArray(255, 'n'), 30);
    makeRaw(top + "/sub/two\nlines", 40);
    makeRaw(top + "/sub/\u202Efdp.exe", 50);
    makeRaw(top + "/sub/not text \xff\xfe", 60);
    makeRaw(top + "/sub/.hidden", 0);
    QByteArray elsewhere = top.first(top.lastIndexOf('/')) + "/Canary";
    if (::link((top + "/large").constData(), (top + "/sub/large again").constData()) != 0 ||
        ::symlink("readme.txt", (top + "/link").constData()) != 0 ||
        ::symlink(elsewhere.constData(), (top + "/link to folder").constData()) != 0 ||
        ::mkfifo((top + "/pipe").constData(), 0600) != 0) {
        qFatal("cannot make everything in %s", top.constData());
    }
    ::mknod((top + "/null").constData(), S_IFCHR | 0600, makedev(1, 3)); // where this user may
    setAttributes(top + "/link", 2);
}

QStringList oddNames()
{
    return {u"report.pdf"_s, QString(250, u'l') + u".text"_s, u"two\nlines \u202Efdp.txt"_s};
}

} // namespace lapsa::test
