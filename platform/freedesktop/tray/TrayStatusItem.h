// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ProgramIdentity.h"
#include "StatusButton.h"
#include "StatusItem.h"
#include "StatusNotifierItem.h"
#include "TaskbarMenuKeys.h"
#include "TrayIcon.h"
#include "TrayMenu.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>
#include <optional>

namespace lapsa {

/// A status item in whatever tray there is: by `org.kde.StatusNotifierItem` if a tray host shows such items, otherwise
/// by XEmbed, switching between them as taskbars start and stop. Without a tray the button still exists, at an unknown
/// position.
class TrayStatusItem final : public StatusButton, public StatusItem
{
    Q_OBJECT

public:
    explicit TrayStatusItem(const ProgramIdentity& identity);
    ~TrayStatusItem() override;

    [[nodiscard]] StatusButton* button() override { return this; }

    void setMenu(QList<StatusMenuEntry> entries) override;

    [[nodiscard]] std::optional<QRect> frame() const override;
    bool setTemplateImage(const QString& name, int size) override;
    void setTitle(const QString& title) override;
    void setToolTip(const QString& toolTip) override;
    void setHighlighted(bool highlighted) override;

private:
    void showIcon();
    void chooseTray();
    void showEmbedded();
    void setEmbeddedMenu();
    void clickedAt(const std::optional<QPoint>& place);
    void popUpMenu(const QPoint& place);

    ProgramIdentity m_identity;
    TrayIcon m_icon;
    QString m_toolTip;
    QList<StatusMenuEntry> m_entries;
    StatusNotifierItem m_notifierItem;
    TaskbarMenuKeys m_taskbarMenuKeys;
    /// Created when first needed.
    std::unique_ptr<TrayMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_embedded;
    QTimer m_embedding;
    /// Where the icon was last clicked: a status notifier item does not know its position.
    std::optional<QPoint> m_clicked;
    QElapsedTimer m_sinceClick;
};

} // namespace lapsa
