// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QRect>
#include <QString>

#include <optional>

namespace lapsa {

/// What is seen of a status item and can be clicked: the icon in the tray, under which the panel hangs.
class StatusButton : public QObject
{
    Q_OBJECT

public:
    /// Where it is on the desktop, in logical pixels; where only a click on it is known, the point of the click.
    /// Nothing where nothing is known: the panel then comes up in the top right corner of the work area.
    [[nodiscard]] virtual std::optional<QRect> frame() const = 0;

    /// Shows the template image of that name, drawn `size` logical pixels wide and high in a colour that is seen on the
    /// desktop's bar. False when there is no such image.
    virtual bool setTemplateImage(const QString& name, int size) = 0;
    /// Shows a short text in place of an image.
    virtual void setTitle(const QString& title) = 0;
    virtual void setToolTip(const QString& toolTip) = 0;
    /// Shown while the panel is open, where the desktop can show it.
    virtual void setHighlighted(bool highlighted) = 0;

signals:
    /// A left click, or what the desktop has in its place.
    void clicked();
};

} // namespace lapsa
