// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Material.h"
#include "PanelWorld.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// A menu with two entries, the first one marked, as it is seen.
class ShownMenu final
{
public:
    explicit ShownMenu(bool compositing)
    {
        material::setTranslucencyAvailable(compositing);
        menu.addAction(u"First"_s);
        menu.addAction(u"Second"_s);
        menu.popup({200, 200});
        menu.setActiveAction(menu.actions().constFirst());
        QApplication::processEvents();
        image = QImage(menu.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        menu.render(&image);
    }

    ShownMenu(const ShownMenu&) = delete;
    ShownMenu& operator=(const ShownMenu&) = delete;

    ~ShownMenu() { material::setTranslucencyAvailable(false); }

    /// The row of the marked entry.
    [[nodiscard]] QRect marked() const { return menu.actionGeometry(menu.actions().constFirst()); }

    QMenu menu;
    QImage image;
};

} // namespace

class MenusTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void withoutACompositorEverythingIsSquareUpToTheHairline()
    {
        const ShownMenu shown(false);
        const QColor accent = themeColor(ColorRole::Accent, shown.menu.palette());
        const QRect row = shown.marked();

        for (const QPoint& corner :
             {QPoint(1, row.top()), QPoint(1, row.bottom()), QPoint(shown.image.width() - 2, row.top()),
              QPoint(shown.image.width() - 2, row.bottom())}) {
            QCOMPARE(shown.image.pixelColor(corner), accent);
        }
        QVERIFY(shown.image.pixelColor(0, row.center().y()) != accent);
        QCOMPARE(shown.image.pixelColor(0, 0).alpha(), 255);
    }

    void withACompositorTheMenuIsRoundInItsShadow()
    {
        const ShownMenu shown(true);
        const QImage& image = shown.image;
        const int middle = image.width() / 2;

        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        // From the edge of the window up to the menu the shadow grows, and it is darker below than above.
        const auto alphaAbove = [&](int y) { return image.pixelColor(middle, y).alpha(); };
        const auto alphaBelow = [&](int y) { return image.pixelColor(middle, image.height() - 1 - y).alpha(); };
        int top = 0;
        while (alphaAbove(top) < 255) {
            QVERIFY(alphaAbove(top) <= alphaAbove(top + 1));
            ++top;
        }
        int bottom = 0;
        while (alphaBelow(bottom) < 255) {
            ++bottom;
        }
        QVERIFY(top >= 8);
        QVERIFY(alphaAbove(top - 1) > 0);
        QVERIFY(alphaBelow(bottom - 1) > alphaAbove(top - 1));
        const int left = shown.menu.contentsMargins().left();
        QVERIFY(image.pixelColor(left, top).alpha() < 255);
    }

    void aMenuWithAShadowIsSeenWhereItWasAskedFor()
    {
        const ShownMenu shown(true);

        const QRect seen = shown.menu.geometry().marginsRemoved(shown.menu.contentsMargins());

        QCOMPARE(seen.topLeft(), QPoint(200, 200));
    }

    void aClickOnTheShadowClosesTheMenu()
    {
        ShownMenu shown(true);
        QVERIFY(shown.menu.isVisible());

        QTest::mouseClick(&shown.menu, Qt::LeftButton, {}, {2, 2});

        QVERIFY(!shown.menu.isVisible());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::MenusTest)
#include "Menus_test.moc"
