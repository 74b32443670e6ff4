// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileIconProvider.h"
#include "IconThemes.h"
#include "TemporaryHome.h"

#include <QIcon>
#include <QPixmap>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

void install(const TemporaryHome& home, const QString& theme, const QColor& page)
{
    home.makeFile(u"icons/%1/index.theme"_s.arg(theme),
                  "[Icon Theme]\nName=x\nDirectories=all\n[all]\nType=Scalable\nMinSize=8\nMaxSize=512\nSize=24\n");
    home.makeFolder(u"icons/%1/all"_s.arg(theme));
    QPixmap pixmap(24, 24);
    pixmap.fill(page);
    pixmap.save(home.path(u"icons/%1/all/text-plain.png"_s.arg(theme)));
}

QColor pageOf(FileIconProvider& provider)
{
    const QIcon icon = provider.icon(QUrl(u"file:///a.txt"_s), ItemKind::File);
    return icon.pixmap(QSize(24, 24)).toImage().pixelColor(12, 12);
}

} // namespace

class IconThemesTest final : public QObject
{
    Q_OBJECT

private slots:

    void theThemeThatSuitsTheSchemeIsUsed_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<ColorScheme>("scheme");
        QTest::addColumn<QString>("used");
        const auto dark = ColorScheme::Dark;
        const auto light = ColorScheme::Light;
        QTest::newRow("dark twin") << QStringList{u"nice"_s, u"nice-dark"_s} << u"nice"_s << dark << u"nice-dark"_s;
        QTest::newRow("light twin") << QStringList{u"nice"_s, u"nice-dark"_s} << u"nice-dark"_s << light << u"nice"_s;
        QTest::newRow("suits") << QStringList{u"nice"_s, u"nice-dark"_s} << u"nice-dark"_s << dark << u"nice-dark"_s;
        QTest::newRow("another spelling") << QStringList{u"P"_s, u"P-Dark"_s} << u"P"_s << dark << u"P-Dark"_s;
        QTest::newRow("no twin") << QStringList{u"nice"_s, u"breeze"_s} << u"nice"_s << dark << u"nice"_s;
        QTest::newRow("not installed") << QStringList{u"Adwaita"_s} << u"gone"_s << light << u"Adwaita"_s;
        QTest::newRow("not installed, dark")
            << QStringList{u"breeze"_s, u"breeze-dark"_s} << u"gone"_s << dark << u"breeze-dark"_s;
        QTest::newRow("none named") << QStringList{u"Adwaita"_s} << QString() << light << u"Adwaita"_s;
        QTest::newRow("the last resort") << QStringList{u"hicolor"_s, u"Adwaita"_s} << u"hicolor"_s << light
                                         << u"Adwaita"_s;
    }

    void theThemeThatSuitsTheSchemeIsUsed()
    {
        QFETCH(const QStringList, installed);
        QFETCH(const QString, desktop);
        QFETCH(const ColorScheme, scheme);
        QFETCH(const QString, used);
        const TemporaryHome home;
        for (const QString& theme : installed) {
            install(home, theme, Qt::red);
        }
        QIcon::setThemeSearchPaths({home.path(u"icons"_s)});

        useIconsFor(scheme, desktop);

        QCOMPARE(QIcon::themeName(), used);
    }

    void anIconThatTheThemeLacksIsOfACommonOne()
    {
        const TemporaryHome home;
        install(home, u"bare"_s, Qt::red);
        QFile::remove(home.path(u"icons/bare/all/text-plain.png"_s));
        install(home, u"Adwaita"_s, Qt::green);
        QIcon::setThemeSearchPaths({home.path(u"icons"_s)});
        FileIconProvider provider(themedFileIcon);

        useIconsFor(ColorScheme::Light, u"bare"_s);

        QCOMPARE(pageOf(provider), QColor(Qt::green));
    }

    void theIconsOfFilesFollowTheScheme()
    {
        const TemporaryHome home;
        install(home, u"two"_s, Qt::white);
        install(home, u"two-dark"_s, Qt::black);
        QIcon::setThemeSearchPaths({home.path(u"icons"_s)});
        FileIconProvider provider(themedFileIcon);

        useIconsFor(ColorScheme::Light, u"two"_s);
        QCOMPARE(pageOf(provider), QColor(Qt::white));
        useIconsFor(ColorScheme::Dark, u"two"_s);
        QCOMPARE(pageOf(provider), QColor(Qt::black));
        useIconsFor(ColorScheme::Light, u"two"_s);
        QCOMPARE(pageOf(provider), QColor(Qt::white));
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::IconThemesTest)
#include "IconThemes_test.moc"
