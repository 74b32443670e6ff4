// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrayStatusItem.h"

#include "X11Screen.h"
#include "X11Tray.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <chrono>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long a restarting taskbar may take before the icon is shown elsewhere.
constexpr auto taskbarPatience = 1500ms;
/// The approximate size of an icon of which only a point is known.
constexpr int iconExtent = 22;
/// In milliseconds: shorter than between two clicks of any hand.
constexpr qint64 repetitionLimit = 30;

/// Whether the program and the taskbar are on one X server, so that it sees the pointer and the keys there.
bool sharesServerWithTaskbar()
{
    return x11Connection() != nullptr && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

/// A taskbar shows the shortcuts of its menu, but leaves them to the program.
QList<StatusMenuEntry> withHeardShortcuts(QList<StatusMenuEntry> entries)
{
    if (!sharesServerWithTaskbar()) {
        for (StatusMenuEntry& entry : entries) {
            entry.shortcut.clear();
        }
    }
    return entries;
}

/// Where the icon was clicked, if known. Taskbars report clicks in their own units, and some report nothing, so the
/// reported point is used only if the program is not on the taskbar's X server and cannot query the pointer.
std::optional<QPoint> placeOfClick(const QPoint& reported)
{
    if (sharesServerWithTaskbar()) {
        return QCursor::pos();
    }
    return reported.isNull() ? std::nullopt : std::optional(reported);
}

} // namespace

TrayStatusItem::TrayStatusItem(const ProgramIdentity& identity)
    : m_identity(identity)
    , m_icon(identity.drawings)
    , m_notifierItem(identity)
{
    m_embedding.setSingleShot(true);
    connect(&m_embedding, &QTimer::timeout, this, &TrayStatusItem::showEmbedded);
    connect(&m_notifierItem, &StatusNotifierItem::shownChanged, this, &TrayStatusItem::chooseTray);
    connect(&m_notifierItem, &StatusNotifierItem::activated, this,
            [this](const QPoint& reported) { clickedAt(placeOfClick(reported)); });
    connect(&m_notifierItem.menu(), &DBusMenu::opened, &m_taskbarMenuKeys, &TaskbarMenuKeys::menuOpened);
    connect(&m_notifierItem.menu(), &DBusMenu::closed, &m_taskbarMenuKeys, &TaskbarMenuKeys::menuClosed);
    connect(&m_notifierItem, &StatusNotifierItem::menuRequested, this,
            [this](const QPoint& reported) { popUpMenu(placeOfClick(reported).value_or(reported)); });
    if (m_notifierItem.shown() || !x11TrayAvailable()) {
        chooseTray();
    } else {
        m_embedding.start(0ms);
    }
}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::setMenu(QList<StatusMenuEntry> entries)
{
    m_entries = std::move(entries);
    m_notifierItem.menu().setEntries(withHeardShortcuts(m_entries));
    m_taskbarMenuKeys.setEntries(m_entries);
    if (m_embedded) {
        setEmbeddedMenu();
    } else {
        m_menu.reset();
    }
}

void TrayStatusItem::setEmbeddedMenu()
{
    auto menu = std::make_unique<TrayMenu>(m_entries);
    m_embedded->setContextMenu(menu.get());
    m_menu = std::move(menu);
}

std::optional<QRect> TrayStatusItem::frame() const
{
    if (m_embedded && m_embedded->isVisible() && !m_embedded->geometry().isEmpty()) {
        return m_embedded->geometry();
    }
    if (!m_clicked) {
        return std::nullopt;
    }
    const QScreen* const screen = QGuiApplication::screenAt(*m_clicked);
    // A taskbar that reserves space lies outside the work area. With any other, keep at least the icon uncovered.
    const bool inWorkArea = screen != nullptr && screen->availableGeometry().contains(*m_clicked);
    const int extent = inWorkArea ? iconExtent : 1;
    QRect icon(0, 0, extent, extent);
    icon.moveCenter(*m_clicked);
    return icon;
}

bool TrayStatusItem::setTemplateImage(const QString& name, int size)
{
    const bool found = m_icon.setTemplateImage(name, size);
    showIcon();
    return found;
}

void TrayStatusItem::setTitle(const QString& title)
{
    m_icon.setTitle(title);
    showIcon();
}

void TrayStatusItem::setToolTip(const QString& toolTip)
{
    m_toolTip = toolTip;
    m_notifierItem.setToolTip(toolTip);
    if (m_embedded) {
        m_embedded->setToolTip(toolTip);
    }
}

void TrayStatusItem::setHighlighted(bool highlighted)
{
    m_icon.setHighlighted(highlighted);
    showIcon();
}

void TrayStatusItem::showIcon()
{
    m_icon.setForeground(x11TrayForeground());
    const QString suffix = m_icon.themedSuffix();
    const bool themed = !m_identity.iconThemes.isEmpty() && !suffix.isEmpty();
    m_notifierItem.setIcon(themed ? m_identity.id + suffix : QString(), m_icon.images());
    if (m_embedded) {
        m_embedded->setIcon(m_icon.icon());
    }
}

void TrayStatusItem::chooseTray()
{
    if (m_notifierItem.shown()) {
        m_embedding.stop();
        if (m_embedded) {
            m_embedded->hide();
        }
        showIcon();
    } else if (x11Connection() != nullptr) {
        m_embedding.start(taskbarPatience);
    }
}

/// The toolkit chooses a kind of tray when its icon is first used, and keeps it. So its icon is first used here, while
/// this is the only kind.
void TrayStatusItem::showEmbedded()
{
    if (!m_embedded) {
        m_embedded = std::make_unique<QSystemTrayIcon>();
        connect(m_embedded.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
                emit clicked(frame());
            }
        });
        setEmbeddedMenu();
        m_embedded->setToolTip(m_toolTip);
    }
    showIcon();
    m_embedded->show();
}

void TrayStatusItem::clickedAt(const std::optional<QPoint>& place)
{
    // For the second press of a double click, waybar calls twice at once: the panel would open and close again unseen.
    if (m_sinceClick.isValid() && m_sinceClick.elapsed() < repetitionLimit) {
        return;
    }
    if (place) {
        m_clicked = place;
    }
    emit clicked(frame());
    m_sinceClick.start(); // after what the click did, which may take longer
}

void TrayStatusItem::popUpMenu(const QPoint& place)
{
    if (!m_menu) {
        m_menu = std::make_unique<TrayMenu>(m_entries);
    }
    m_menu->popup(place);
}

} // namespace lapsa
