// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "SymbolTabBar.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr double largePointSize = 20;

/// Whether the widget may reach beyond the window's lower edge, because it is scrolled to.
bool scrolls(const QWidget& widget)
{
    for (const QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea*>(above) != nullptr ||
            qobject_cast<const FileListView*>(above) != nullptr) {
            return true;
        }
    }
    return false;
}

QString nameOf(const QWidget& widget)
{
    const QString name = widget.accessibleName();
    const QString text = name.isEmpty() ? widget.property("text").toString() : name;
    return QString::fromLatin1(widget.metaObject()->className()) + u" \""_s + text + u'"';
}

/// What is shown in part outside the window, or in less room than it needs.
QStringList cutOff(const QWidget& window)
{
    QStringList names;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != &window) {
            continue;
        }
        QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (scrolls(*widget)) {
            place.moveTop(0);
            place.setHeight(1);
        }
        const QSize least = widget->minimumSizeHint().expandedTo(QSize(0, 0));
        if (!window.rect().contains(place) || widget->size().expandedTo(least) != widget->size()) {
            names.push_back(nameOf(*widget));
        }
    }
    return names;
}

} // namespace

/// Everything stays inside its window, at twice the text size, in both languages and from either side.
class LargeTextTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        PanelWorld::setUpApplication();
        QFont font = QApplication::font();
        font.setPointSizeF(largePointSize);
        QApplication::setFont(font);
    }

    void cleanup() { QApplication::setLayoutDirection(Qt::LeftToRight); }

    void inThePanelNothingReachesOverTheEdge_data() { addWays(); }

    void inThePanelNothingReachesOverTheEdge()
    {
        const Language language(takeWay().constData());
        PanelWorld world;
        world.addItem(u"a name that is far too long for the width of the row it stands in.txt"_s, 525600);
        world.addItem(u"b.txt"_s);
        world.store().setLastMessage(u"A long message. "_s.repeated(40));
        PanelWorld::settle();

        QCOMPARE(cutOff(world.panel), QStringList());
    }

    void inThePreferencesNothingReachesOverTheEdge_data() { addWays(); }

    void inThePreferencesNothingReachesOverTheEdge()
    {
        const Language language(takeWay().constData());
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) {
            settings.autoCleanFolders = {
                {.folderPath = u"/home/somebody/a folder far/down in/many others/Downloads"_s}};
        });
        auto& tabs = *world.view.findChild<SymbolTabBar*>();

        for (int index = 0; index < tabs.count(); ++index) {
            tabs.setCurrentIndex(index);
            world.settle();

            QCOMPARE(cutOff(world.view), QStringList());
        }
    }

private:
    static void addWays()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("English") << QByteArray("en_US.UTF-8") << Qt::LeftToRight;
        QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << Qt::LeftToRight;
        QTest::newRow("English, from right to left") << QByteArray("en_US.UTF-8") << Qt::RightToLeft;
        QTest::newRow("Italian, from right to left") << QByteArray("it_IT.UTF-8") << Qt::RightToLeft;
    }

    /// Sets the direction of this row; its locale.
    static QByteArray takeWay()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const Qt::LayoutDirection, direction);
        QApplication::setLayoutDirection(direction);
        return locale;
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::LargeTextTest)
#include "LargeText_test.moc"
