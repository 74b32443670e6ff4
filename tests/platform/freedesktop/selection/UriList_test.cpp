// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "UriList.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using Paths = FileManagerSelection::Paths;

constexpr std::nullopt_t noPath = std::nullopt;

void row(const char* name, const QByteArray& list, const Paths& paths)
{
    QTest::newRow(name) << list << paths;
}

/// The forms in which file managers write two files.
void addForms()
{
    const Paths two{u"/home/b.txt"_s, u"/home/a.txt"_s};

    row("lines that end in CR LF", "file:///home/b.txt\r\nfile:///home/a.txt\r\n", two);
    row("lines that end in LF", "file:///home/b.txt\nfile:///home/a.txt\n", two);
    row("lines that end in NUL", QByteArray("file:///home/b.txt\0file:///home/a.txt\0", 38), two);
    row("no end of the last line", "file:///home/b.txt\r\nfile:///home/a.txt", two);
    row("a NUL after the last line", QByteArray("file:///home/b.txt\r\nfile:///home/a.txt\r\n\0", 41), two);
    row("empty lines", "\n\r\nfile:///home/b.txt\n\n\nfile:///home/a.txt\n\n", two);
    row("comments", "# first: file:///x\r\nfile:///home/b.txt\r\n#\r\nfile:///home/a.txt\r\n", two);
    row("files to copy", "copy\nfile:///home/b.txt\nfile:///home/a.txt", two);
    row("files to cut, with CR LF", "cut\r\nfile:///home/b.txt\r\nfile:///home/a.txt\r\n", two);
    row("the same file twice", "file:///a\nfile:///a\n", {u"/a"_s, u"/a"_s});
}

/// Names, and how they are escaped.
void addNames()
{
    row("blank, percent sign and number sign", "file:///a%20b%25c%23d\n", {u"/a b%c#d"_s});
    row("a line break in a name", "file:///a%0Ab\n", {u"/a\nb"_s});
    row("letters beyond ASCII", "file:///perch%C3%A9\n", {u"/perch\u00E9"_s});
    row("letters beyond ASCII as they are", "file:///perch\xC3\xA9\n", {u"/perch\u00E9"_s});
    row("this machine by name", "file://localhost/a\n", {u"/a"_s});
    row("without an authority", "file:/a\n", {u"/a"_s});
    row("the scheme in capital letters", "FILE:///a\n", {u"/a"_s});
    row("the top folder", "file:///\n", {u"/"_s});
}

/// Files, some of which have no path here.
void addFilesWithoutAPath()
{
    row("a name that is not UTF-8", "file:///a\nfile:///%E9\n", {u"/a"_s, noPath});
    row("a NUL in a name", "file:///a%00b\n", {noPath});
    row("another machine", "file://server/a\n", {noPath});
    const QByteArray machine = QSysInfo::machineHostName().toUtf8();
    row("this machine by its own name", "file://" + machine + "/a\nfile://" + machine.toUpper() + "/b\n",
        {u"/a"_s, u"/b"_s});
    row("a machine of a similar name", "file://" + machine + "x/a\n", {noPath});
    row("remote places and the Trash", "sftp://host/a\ntrash:///b\nfile:///c\n", {noPath, noPath, u"/c"_s});
}

/// What names no file at all.
void addNothing()
{
    row("nothing", "", {});
    row("line ends only", "\r\n\n\r\n", {});
    row("a NUL only", QByteArray("\0", 1), {});
    row("paths that are no URIs", "/home/a.txt\nb.txt\n", {});
    row("a colon at the start", ":///a\n", {});
    row("a scheme that starts with a digit", "1file:///a\n", {});
    row("a blank before the scheme", " file:///a\n", {});
    row("bytes without a meaning", "\xff\xfe\x01\x7f%%%\n:\n", {});
}

} // namespace

class UriListTest final : public QObject
{
    Q_OBJECT

private slots:

    void aListIsReadAsFileManagersWriteIt_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<Paths>("paths");
        addForms();
        addNames();
        addFilesWithoutAPath();
        addNothing();
    }

    void aListIsReadAsFileManagersWriteIt()
    {
        QFETCH(QByteArray, list);
        QFETCH(Paths, paths);

        QCOMPARE(pathsOfUriList(list), paths);
    }

    void tenThousandFilesKeepTheirOrder()
    {
        constexpr int count = 10'000;
        QByteArray list;
        for (int i = 0; i < count; ++i) {
            list += "file:///folder/" + QByteArray::number(i) + "\r\n";
        }

        const Paths paths = pathsOfUriList(list);

        QCOMPARE(paths.size(), count);
        QCOMPARE(paths.first(), u"/folder/0"_s);
        QCOMPARE(paths.last(), u"/folder/9999"_s);
    }
};

} // namespace lapsa::test

QTEST_APPLESS_MAIN(lapsa::test::UriListTest)
#include "UriList_test.moc"
