// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileIconProvider.h"
#include "TemporaryHome.h"

#include <QIcon>
#include <QPixmap>
#include <QTest>
#include <QUrl>

#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

QIcon square(const QColor& color)
{
    QPixmap pixmap(24, 24);
    pixmap.fill(color);
    return QIcon(pixmap);
}

/// A provider whose look-ups are noted.
class NotedLookups final
{
public:
    QIcon icon(const QString& path, ItemKind kind = ItemKind::File)
    {
        return provider.icon(QUrl::fromLocalFile(path), kind);
    }

    QStringList asked;
    FileIconProvider provider{[this](const QUrl& url, ItemKind kind) {
        asked.push_back(url.toLocalFile());
        return square(kind == ItemKind::Folder ? Qt::blue : Qt::red);
    }};
};

/// Makes an icon theme with one icon and takes it into use until it goes.
class OneIconTheme final
{
public:
    OneIconTheme(const TemporaryHome& home, const QString& icon, const QColor& color, int size)
        : m_before(QIcon::themeName())
        , m_pathsBefore(QIcon::themeSearchPaths())
    {
        home.makeFile(u"icons/one/index.theme"_s,
                      "[Icon Theme]\nName=one\nDirectories=all\n[all]\nType=Scalable\nMinSize=8\nMaxSize=512\nSize=" +
                          QByteArray::number(size) + "\n");
        home.makeFolder(u"icons/one/all"_s);
        QPixmap pixmap(size, size);
        pixmap.fill(color);
        pixmap.save(home.path(u"icons/one/all/%1.png"_s.arg(icon)));
        QIcon::setThemeSearchPaths({home.path(u"icons"_s)});
        QIcon::setThemeName(u"one"_s);
    }

    OneIconTheme(const OneIconTheme&) = delete;
    OneIconTheme& operator=(const OneIconTheme&) = delete;

    ~OneIconTheme()
    {
        QIcon::setThemeSearchPaths(m_pathsBefore);
        QIcon::setThemeName(m_before);
    }

private:
    QString m_before;
    QStringList m_pathsBefore;
};

QColor centreOf(const QIcon& icon)
{
    return icon.pixmap(QSize(24, 24)).toImage().pixelColor(12, 12);
}

} // namespace

class FileIconProviderTest final : public QObject
{
    Q_OBJECT

private slots:

    void filesOfOneExtensionShareOneImageWhateverTheCase()
    {
        NotedLookups lookups;

        const QIcon one = lookups.icon(u"/home/me/Report.PDF"_s);
        const QIcon other = lookups.icon(u"/tmp/notes.pdf"_s);

        QCOMPARE(one.cacheKey(), other.cacheKey());
        QCOMPARE(lookups.asked, QStringList{u"/home/me/Report.PDF"_s});
    }

    void aFolderAndAFileWithoutExtensionShareOneImage()
    {
        NotedLookups lookups;

        const QIcon folder = lookups.icon(u"/home/me/Documents"_s, ItemKind::Folder);
        const QIcon file = lookups.icon(u"/home/me/Makefile"_s);

        QCOMPARE(folder.cacheKey(), file.cacheKey());
        QCOMPARE(lookups.asked, QStringList{u"/home/me/Documents"_s});
    }

    void aNameThatBeginsWithADotHasNoExtension()
    {
        NotedLookups lookups;

        QCOMPARE(lookups.icon(u"/home/me/.profile"_s).cacheKey(), lookups.icon(u"/home/me/Makefile"_s).cacheKey());
    }

    void aLaterCallDoesNotAskAgain()
    {
        NotedLookups lookups;

        for (int i = 0; i < 3; ++i) {
            std::ignore = lookups.icon(u"/home/me/%1.txt"_s.arg(i));
        }

        QCOMPARE(lookups.asked.size(), 1);
    }

    void eachExtensionIsAskedForOnItsOwn()
    {
        NotedLookups lookups;

        QVERIFY(lookups.icon(u"/a.txt"_s).cacheKey() != lookups.icon(u"/a.tar.gz"_s).cacheKey());
        QCOMPARE(lookups.asked.size(), 2);
    }

    void aPathOfUnknownKindDoesNotDecideForItsExtension()
    {
        NotedLookups lookups;

        QCOMPARE(centreOf(lookups.icon(u"/dead/Documents"_s, ItemKind::Unknown)), QColor(Qt::red));
        QCOMPARE(centreOf(lookups.icon(u"/home/me/Documents"_s, ItemKind::Folder)), QColor(Qt::blue));
        QCOMPARE(centreOf(lookups.icon(u"/dead/Documents"_s, ItemKind::Unknown)), QColor(Qt::blue));
    }

    void aFileKeepsItsIconWhenItsKindIsFound()
    {
        NotedLookups lookups;

        const QIcon before = lookups.icon(u"/home/me/a.txt"_s, ItemKind::Unknown);
        const QIcon after = lookups.icon(u"/home/me/a.txt"_s, ItemKind::File);

        QCOMPARE(before.cacheKey(), after.cacheKey());
        QCOMPARE(lookups.asked.size(), 1);
    }

    void thereIsOneSharedProvider() { QCOMPARE(&FileIconProvider::shared(), &FileIconProvider::shared()); }

    void theThemeIsAskedByTheTypeThatTheNameTells()
    {
        const TemporaryHome home;
        const OneIconTheme theme(home, u"application-pdf"_s, Qt::green, 24);
        // Nothing in it is a PDF: what a file holds is not read.
        const QString file = home.makeFile(u"notes.pdf"_s, "plain text\n");

        QCOMPARE(centreOf(themedFileIcon(QUrl::fromLocalFile(file), ItemKind::File)), QColor(Qt::green));
        QCOMPARE(centreOf(themedFileIcon(QUrl::fromLocalFile(u"/is/not/there.pdf"_s), ItemKind::Unknown)),
                 QColor(Qt::green));
    }

    void aFolderShowsTheFolderOfTheTheme()
    {
        const TemporaryHome home;
        const OneIconTheme theme(home, u"folder"_s, Qt::blue, 24);

        QCOMPARE(centreOf(themedFileIcon(QUrl::fromLocalFile(u"/home/me/Pictures.pdf"_s), ItemKind::Folder)),
                 QColor(Qt::blue));
    }

    void anIconIs24PointsWideAndHigh_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("smaller in the theme") << 16;
        QTest::newRow("larger in the theme") << 256;
    }

    void anIconIs24PointsWideAndHigh()
    {
        QFETCH(const int, size);
        const TemporaryHome home;
        const OneIconTheme theme(home, u"text-x-generic"_s, Qt::cyan, size);

        const QPixmap pixmap =
            themedFileIcon(QUrl::fromLocalFile(u"/a.unknown"_s), ItemKind::File).pixmap(QSize(24, 24), 2);

        QCOMPARE(pixmap.deviceIndependentSize(), QSizeF(24, 24));
        QCOMPARE(pixmap.toImage().pixelColor(24, 24), QColor(Qt::cyan));
    }

    void withoutAThemeAPageAndAFolderAreDrawn()
    {
        const TemporaryHome home;
        const OneIconTheme theme(home, u"nothing-of-use"_s, Qt::red, 24);

        const QIcon page = themedFileIcon(QUrl::fromLocalFile(u"/a.txt"_s), ItemKind::File);
        const QIcon folder = themedFileIcon(QUrl::fromLocalFile(u"/b"_s), ItemKind::Folder);

        for (const QIcon& icon : {page, folder}) {
            QCOMPARE(icon.pixmap(QSize(24, 24)).size(), QSize(24, 24));
            QCOMPARE(icon.pixmap(QSize(24, 24)).toImage().pixelColor(12, 14).alpha(), 255);
        }
        QVERIFY(page.pixmap(24, 24).toImage() != folder.pixmap(24, 24).toImage());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FileIconProviderTest)
#include "FileIconProvider_test.moc"
