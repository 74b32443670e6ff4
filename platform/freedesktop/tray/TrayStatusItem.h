// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "BarMenuKeys.h"
#include "StatusButton.h"
#include "StatusItem.h"
#include "StatusNotifierItem.h"
#include "TrayIcon.h"
#include "TrayMenu.h"

#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

namespace lapsa {

/// A status item in whatever tray there is: by `org.kde.StatusNotifierItem` where a bar shows such items, by XEmbed
/// otherwise, and from the one to the other as bars come and go. Without any tray the button still is there, as the
/// place that nobody knows.
class TrayStatusItem final : public StatusButton, public StatusItem
{
    Q_OBJECT

public:
    TrayStatusItem();
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
    void clickedAt(const QPoint& place);
    void popUpMenu(const QPoint& place);

    TrayIcon m_icon;
    QString m_toolTip;
    QList<StatusMenuEntry> m_entries;
    StatusNotifierItem m_notifierItem;
    BarMenuKeys m_barMenuKeys;
    /// Made when it is needed first.
    std::unique_ptr<TrayMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_embedded;
    QTimer m_embedding;
    /// Where the icon was clicked last, of a bar that does not tell where it is.
    std::optional<QPoint> m_clicked;
};

} // namespace lapsa
