// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SplashWindowController.h"

#include "Material.h"
#include "Motion.h"
#include "SplashView.h"
#include "WindowSystem.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QVariantAnimation>

#include <tuple>

namespace lapsa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto fadeIn = 220ms;
constexpr auto fadeOut = 280ms;

QVariantAnimation* makeFade(QWidget& window)
{
    auto* const fade = new QVariantAnimation(&window);
    fade->setStartValue(0.0);
    fade->setEndValue(0.0);
    QObject::connect(fade, &QVariantAnimation::valueChanged, &window, [&window](const QVariant& opacity) {
        window.setWindowOpacity(opacity.toDouble());
        window.update(); // on X11 a new opacity shows only with the next paint
    });
    return fade;
}

/// Its picture stays where it is, whatever is around it.
void adapt(SplashView& window)
{
    window.setTranslucent(material::translucencyAvailable());
    QRect picture(QPoint(), SplashView::extent);
    picture.moveCenter(QGuiApplication::primaryScreen()->geometry().center());
    window.move(picture.topLeft() - window.contentsRect().topLeft());
}

SplashView* makeWindow()
{
    auto* const window = new SplashView;
    window->setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window->setWindowTitle(u"Lapsa"_s);
    // With an alpha channel even where nothing is translucent now: compositing may begin while it is shown.
    window->setTranslucent(true);
    std::ignore = window->winId();
    adapt(*window);
    return window;
}

} // namespace

void SplashWindowController::showSplash(std::chrono::duration<double> duration, const WindowSystem& windowSystem)
{
    material::setTranslucencyAvailable(windowSystem.compositingAvailable());
    SplashView* const window = makeWindow();
    QObject::connect(&windowSystem, &WindowSystem::compositingChanged, window, [window, &windowSystem] {
        material::setTranslucencyAvailable(windowSystem.compositingAvailable());
        adapt(*window);
    });
    QVariantAnimation* const fade = makeFade(*window);
    window->setWindowOpacity(0);
    window->show();
    window->raise();
    // The window manager decides about the focus, so that a user who is typing does not lose it.
    window->activateWindow();
    QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, window, &QObject::deleteLater);
    motion::moveTo(*fade, 1, fadeIn);
    QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(duration), window, [window, fade] {
        QObject::connect(fade, &QVariantAnimation::finished, window, [window] {
            window->hide();
            window->deleteLater();
        });
        motion::moveTo(*fade, 0, fadeOut);
    });
}

} // namespace lapsa
