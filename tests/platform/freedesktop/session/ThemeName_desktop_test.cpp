// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopAppearance.h"
#include "HelperProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QApplication>
#include <QPalette>
#include <QTest>
#include <QThread>

#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

QPalette paletteFor(ColorScheme scheme)
{
    return QPalette(scheme == ColorScheme::Dark ? Qt::black : Qt::white);
}

void set(const QString& name, const QString& type, const QString& value)
{
    std::ignore =
        outputOf(u"xfconf-query"_s, {u"-c"_s, u"xsettings"_s, u"-p"_s, name, u"-n"_s, u"-t"_s, type, u"-s"_s, value});
}

} // namespace

/// Without a portal, on a real X server with the settings daemon of Xfce.
class ThemeNameDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void theNameOfTheThemeTellsTheSchemeLive_data()
    {
        QTest::addColumn<QString>("theme");
        QTest::addColumn<ColorScheme>("scheme");
        QTest::newRow("GNOME's") << u"Adwaita-dark"_s << ColorScheme::Dark;
        QTest::newRow("with a capital") << u"Arc-Dark"_s << ColorScheme::Dark;
        QTest::newRow("in the middle") << u"Materia-dark-compact"_s << ColorScheme::Dark;
        QTest::newRow("high contrast") << u"HighContrastInverse"_s << ColorScheme::Dark;
        QTest::newRow("dark title bars only") << u"Arc-Darker"_s << ColorScheme::Light;
        QTest::newRow("another word") << u"Darkness"_s << ColorScheme::Light;
        QTest::newRow("light") << u"Adwaita"_s << ColorScheme::Light;
    }

    void theNameOfTheThemeTellsTheSchemeLive()
    {
        QFETCH(const QString, theme);
        QFETCH(const ColorScheme, scheme);
        const ColorScheme other = scheme == ColorScheme::Dark ? ColorScheme::Light : ColorScheme::Dark;
        set(u"/Net/ThemeName"_s, u"string"_s, other == ColorScheme::Dark ? u"Greybird-dark"_s : u"Greybird"_s);
        FreedesktopAppearance appearance(paletteFor);
        appearance.setForcedScheme(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), other, patience);

        set(u"/Net/ThemeName"_s, u"string"_s, theme);

        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), scheme, patience);
    }

    void itIsKnownAtOnceAtTheNextStart()
    {
        set(u"/Net/ThemeName"_s, u"string"_s, u"Adwaita-dark"_s);
        FreedesktopAppearance first(paletteFor);
        first.setForcedScheme(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(first.scheme(), ColorScheme::Dark, patience);

        FreedesktopAppearance next(paletteFor);
        next.setForcedScheme(std::nullopt);

        QCOMPARE(next.scheme(), ColorScheme::Dark);
    }

    void aForcedSchemeHolds()
    {
        set(u"/Net/ThemeName"_s, u"string"_s, u"Adwaita"_s);
        FreedesktopAppearance forced(paletteFor);
        forced.setForcedScheme(std::nullopt);
        forced.setForcedScheme(ColorScheme::Light);
        FreedesktopAppearance following(paletteFor);
        following.setForcedScheme(std::nullopt);

        set(u"/Net/ThemeName"_s, u"string"_s, u"Adwaita-dark"_s);

        QTRY_COMPARE_WITH_TIMEOUT(following.scheme(), ColorScheme::Dark, patience);
        QCOMPARE(forced.scheme(), ColorScheme::Light);
    }
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    const lapsa::test::TemporaryHome home;
    const lapsa::test::SessionBus bus;
    const lapsa::test::VirtualDisplay display;
    const lapsa::test::HelperProcess settings(lapsa::test::foundProgram(u"xfce4/xfconf/xfconfd"_s));
    while (!bus.hasOwner(u"org.xfce.Xfconf"_s)) {
        QThread::msleep(20);
    }
    const lapsa::test::HelperProcess daemon(u"xfsettingsd"_s, {u"--no-daemon"_s});
    const QApplication application(argc, argv);
    lapsa::test::ThemeNameDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ThemeName_desktop_test.moc"
