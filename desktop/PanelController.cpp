// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelController.h"

#include "AlertDialog.h"
#include "FileIconProvider.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "MainQueue.h"
#include "Material.h"
#include "PreferencesView.h"
#include "RecoveryView.h"
#include "StatusButton.h"
#include "WindowFrame.h"
#include "WindowSystem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QUrl>

#include <chrono>
#include <cmath>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// A tray may take the focus before it forwards the click.
constexpr std::chrono::milliseconds clickAfterFocusLoss{250};

const QScreen& screenOf(const std::optional<QRect>& icon)
{
    const QScreen* const screen = icon ? QGuiApplication::screenAt(icon->center()) : nullptr;
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

/// Where text and all else is drawn larger, the toolkit rounds up: a window of that size would cover a line of the
/// taskbar.
QRect workAreaOf(const QScreen& screen)
{
    const double ratio = screen.devicePixelRatio();
    const int line = ratio == std::floor(ratio) ? 0 : 1;
    return screen.availableGeometry().adjusted(0, 0, -line, -line);
}

PopoverPlacement placementOn(const QScreen& screen, const std::optional<QRect>& icon)
{
    return popoverPlacement(icon, workAreaOf(screen), screen.geometry(), LapsaPanelView::extent);
}

/// The screen with the mouse pointer.
const QScreen& currentScreen()
{
    const QScreen* const screen = QGuiApplication::screenAt(QCursor::pos());
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

QPoint middleOfScreen(const QWidget& window)
{
    return centredFrame(window, currentScreen().availableGeometry()).topLeft();
}

void bringToFront(QWidget& window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

PanelController::PanelController(const Environment& environment)
    : m_environment(environment)
{
    connect(&m_environment.windowSystem, &WindowSystem::compositingChanged, this, &PanelController::adaptToCompositing);
}

PanelController::~PanelController()
{
    delete m_alert;
}

void PanelController::toggle(StatusButton* button, const std::optional<QRect>& icon)
{
    if (m_popover && m_popover->isVisible()) {
        close();
    } else if (m_justClosed) {
        m_justClosed.reset();
    } else {
        showAt(button, icon);
    }
}

void PanelController::show(StatusButton* button)
{
    showAt(button, button != nullptr ? button->frame() : std::nullopt);
}

void PanelController::showAt(StatusButton* button, const std::optional<QRect>& icon)
{
    m_justClosed.reset();
    material::setTranslucencyAvailable(m_environment.windowSystem.compositingAvailable());
    ensurePopover();
    if (button == nullptr) {
        showAlert();
        return;
    }
    m_popover->setBehavior(behavior());
    const QScreen& screen = screenOf(icon);
    m_popover->present(placementOn(screen, icon), workAreaOf(screen));
    m_icon = icon;
    disconnect(m_workAreaWatch);
    m_workAreaWatch = connect(&screen, &QScreen::availableGeometryChanged, this, &PanelController::adaptToWorkArea);
    for (QWidget* const window :
         {static_cast<QWidget*>(m_preferencesWindow.get()), static_cast<QWidget*>(m_recoveryWindow.get())}) {
        if (window != nullptr && window->isVisible()) {
            putBesidePanel(*window);
        }
    }
    button->setHighlighted(true);
}

void PanelController::close()
{
    if (m_popover) {
        m_popover->hide();
    }
}

void PanelController::reveal(const QStringList& ids)
{
    if (m_popover) {
        static_cast<LapsaPanelView&>(m_popover->content()).reveal(ids);
    }
}

void PanelController::announceLocked(const QStringList& ids)
{
    if (m_popover) {
        static_cast<LapsaPanelView&>(m_popover->content()).announceLocked(ids);
    }
}

void PanelController::showPreferences()
{
    material::setTranslucencyAvailable(m_environment.windowSystem.compositingAvailable());
    if (!m_preferencesWindow) {
        makePreferencesWindow();
        m_preferencesWindow->move(middleOfScreen(*m_preferencesWindow));
    }
    present(*m_preferencesWindow);
}

void PanelController::showRecovery()
{
    material::setTranslucencyAvailable(m_environment.windowSystem.compositingAvailable());
    if (!m_recoveryWindow) {
        makeRecoveryWindow();
        m_recoveryWindow->move(middleOfScreen(*m_recoveryWindow));
    }
    present(*m_recoveryWindow);
}

void PanelController::present(QWidget& window)
{
    putBesidePanel(window);
    applyTheme(&window);
    bringToFront(window);
}

void PanelController::applyTheme(const QWidget* window)
{
    if (window != nullptr) {
        m_environment.panel.store.applyCurrentTheme();
    }
}

AlertDialog* PanelController::alert() const
{
    return m_alert;
}

void PanelController::adaptToCompositing()
{
    material::setTranslucencyAvailable(m_environment.windowSystem.compositingAvailable());
    if (m_popover) {
        m_popover->adaptToCompositing();
    }
}

/// A taskbar came, went or grew.
void PanelController::adaptToWorkArea()
{
    if (m_popover && m_popover->isVisible()) {
        const QScreen& screen = screenOf(m_icon);
        m_popover->moveTo(placementOn(screen, m_icon), workAreaOf(screen));
    }
}

void PanelController::ensurePopover()
{
    if (m_popover) {
        return;
    }
    auto openPreferences = [controller = QPointer(this)] {
        if (controller) {
            controller->showPreferences();
        }
    };
    m_popover = std::make_unique<PopoverWindow>(
        PopoverWindow::Environment{.windowSystem = m_environment.windowSystem, .pointer = m_environment.pointer},
        new LapsaPanelView(m_environment.panel, std::move(openPreferences)));
    m_popover->setBehavior(behavior());
    connect(m_popover.get(), &PopoverWindow::didClose, this, &PanelController::reactToClose);
}

void PanelController::makePreferencesWindow()
{
    m_preferencesWindow = std::make_unique<PreferencesView>(m_environment.panel.store, m_environment.folderPicker,
                                                            m_environment.panel.mainQueue);
    // With a title, close and minimise buttons, but not resizable.
    m_preferencesWindow->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                        Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                                        Qt::WindowMinimizeButtonHint);
    m_preferencesWindow->setWindowTitle(Localized::preferences());
    connect(m_preferencesWindow.get(), &PreferencesView::recoveryRequested, this, &PanelController::showRecovery);
}

void PanelController::makeRecoveryWindow()
{
    m_recoveryWindow = std::make_unique<RecoveryView>(RecoveryView::Environment{
        .store = m_environment.panel.store,
        .clock = m_environment.panel.clock,
        .mainQueue = m_environment.panel.mainQueue,
        .icons = [](const QString& name, bool isFolder) {
            return themedFileIcon(QUrl::fromLocalFile(u'/' + name), isFolder ? ItemKind::Folder : ItemKind::File);
        }});
}

/// A panel that closes by itself needs no room beside it: it closes.
void PanelController::putBesidePanel(QWidget& window)
{
    if (m_popover && m_popover->isVisible() && m_popover->behavior() == PopoverWindow::Behavior::ApplicationDefined) {
        const QRect frame = frameOf(window);
        const QPoint place = m_popover->beside(frame).topLeft();
        if (place != frame.topLeft()) {
            window.move(place);
        }
    }
}

void PanelController::showAlert()
{
    if (m_alert == nullptr) {
        // In English whatever the language, on purpose.
        m_alert = new AlertDialog(u"Lapsa"_s, u"Use the menu bar icon to open Lapsa."_s);
        m_alert->setAttribute(Qt::WA_DeleteOnClose);
    }
    bringToFront(*m_alert);
}

void PanelController::reactToClose(PopoverWindow::CloseReason reason)
{
    if (reason == PopoverWindow::CloseReason::FocusLost) {
        m_justClosed = m_environment.panel.mainQueue.asyncAfter(clickAfterFocusLoss, [this] { m_justClosed.reset(); });
    }
    emit popoverDidClose();
}

PopoverWindow::Behavior PanelController::behavior() const
{
    return m_environment.panel.store.settings().keepPanelOpen ? PopoverWindow::Behavior::ApplicationDefined
                                                              : PopoverWindow::Behavior::Transient;
}

} // namespace lapsa
