// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "PlayedWatcher.h"
#include "SessionBus.h"
#include "StatusNotifierTypes.h"
#include "TrayStatusItem.h"

#include <QApplication>
#include <QDBusMessage>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

ProgramIdentity withThemes(const QString& folder)
{
    ProgramIdentity program = exampleProgram();
    program.iconThemes = folder;
    return program;
}

} // namespace

/// The icon that tray hosts recolour themselves, by its name in a theme.
class ThemedTrayIconTest final : public QObject
{
    Q_OBJECT

public:
    explicit ThemedTrayIconTest(const SessionBus& bus)
        : m_bus(bus)
    {}

private slots:

    void itIsOfferedWithTheFolderOfItsTheme()
    {
        const PlayedWatcher watcher(m_bus);
        TrayStatusItem item(withThemes(u"/opt/viewer/share/icons"_s));
        QVERIFY(item.setTemplateImage(u"StatusIcon"_s, 18));
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        QCOMPARE(textOf(watcher, u"IconName"_s), u"org.example.Viewer-symbolic"_s);
        QCOMPARE(textOf(watcher, u"IconThemePath"_s), u"/opt/viewer/share/icons"_s);
        QVERIFY(!imagesOf(watcher).isEmpty());
    }

    void thereAreNoOverlayAndNoIconForAttention()
    {
        const PlayedWatcher watcher(m_bus);
        TrayStatusItem item(withThemes(u"/opt/viewer/share/icons"_s));
        QVERIFY(item.setTemplateImage(u"StatusIcon"_s, 18));
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        QCOMPARE(textOf(watcher, u"OverlayIconName"_s), QString());
        QCOMPARE(textOf(watcher, u"AttentionIconName"_s), QString());
    }

    void theHighlightIsAnotherIcon()
    {
        const PlayedWatcher watcher(m_bus);
        TrayStatusItem item(withThemes(u"/opt/viewer/share/icons"_s));
        QVERIFY(item.setTemplateImage(u"StatusIcon"_s, 18));
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        item.setHighlighted(true);
        QCOMPARE(textOf(watcher, u"IconName"_s), u"org.example.Viewer-open-symbolic"_s);
        item.setHighlighted(false);
        QCOMPARE(textOf(watcher, u"IconName"_s), u"org.example.Viewer-symbolic"_s);
    }

    void withoutAThemeOnlyImagesAreOffered()
    {
        const PlayedWatcher watcher(m_bus);
        TrayStatusItem item(withThemes({}));
        QVERIFY(item.setTemplateImage(u"StatusIcon"_s, 18));
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        QCOMPARE(textOf(watcher, u"IconName"_s), QString());
        QVERIFY(!imagesOf(watcher).isEmpty());
    }

    void aTitleHasNoNamedIcon()
    {
        const PlayedWatcher watcher(m_bus);
        TrayStatusItem item(withThemes(u"/opt/viewer/share/icons"_s));
        item.setTitle(u"V"_s);
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        QCOMPARE(textOf(watcher, u"IconName"_s), QString());
    }

    void itsDrawingTakesTheColourThatATaskbarWritesIntoIt()
    {
        QFile file(u":/lapsa/org.lapsa.Lapsa-symbolic.svg"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString drawing = QString::fromUtf8(file.readAll());
        static const QRegularExpression styles(u"(<style[^>]*id=\"current-color-scheme\"[^>]*>)[^<]*(</style>)"_s);

        drawing.replace(styles, u"\\1.ColorScheme-Text{color:#ff0000}.ColorScheme-Background{color:#00ff00}\\2"_s);

        QImage image(48, 48, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        QSvgRenderer(drawing.toUtf8()).render(&painter);
        painter.end();
        QCOMPARE(image.pixelColor(24, 24), QColor(Qt::red)); // the sheet
        for (int i = 0; i < 48 * 48; ++i) {
            QCOMPARE(image.pixelColor(i % 48, i / 48).blue(), 0);
        }
    }

private:
    static QVariant propertyOf(const PlayedWatcher& watcher, const QString& name)
    {
        const QDBusMessage reply = watcher.ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                               {u"org.kde.StatusNotifierItem"_s, name});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    static QString textOf(const PlayedWatcher& watcher, const QString& name)
    {
        return propertyOf(watcher, name).toString();
    }

    static StatusNotifierPixmaps imagesOf(const PlayedWatcher& watcher)
    {
        return qdbus_cast<StatusNotifierPixmaps>(propertyOf(watcher, u"IconPixmap"_s));
    }

    const SessionBus& m_bus;
};

} // namespace lapsa::test

int main(int argc, char* argv[])
{
    // Before the application: its session bus is looked up once.
    const lapsa::test::SessionBus bus;
    const QApplication application(argc, argv);
    lapsa::test::ThemedTrayIconTest test(bus);
    return QTest::qExec(&test, argc, argv);
}

#include "ThemedTrayIcon_test.moc"
