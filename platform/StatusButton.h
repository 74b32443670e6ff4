// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QRect>
#include <QString>

#include <optional>

namespace lapsa {

/// The visible, clickable part of a status item: the icon in the tray.
class StatusButton : public QObject
{
    Q_OBJECT

public:
    /// Its position on the desktop, in logical pixels; the point of the last click if only that is known; otherwise
    /// nothing.
    [[nodiscard]] virtual std::optional<QRect> frame() const = 0;

    /// Shows the named template image, `size` logical pixels wide and high, in a colour visible on the taskbar. False
    /// if there is no such image.
    virtual bool setTemplateImage(const QString& name, int size) = 0;
    /// Shows a short text instead of an image.
    virtual void setTitle(const QString& title) = 0;
    virtual void setToolTip(const QString& toolTip) = 0;
    /// Marks the button while the window that it opens is open, if the desktop can show that.
    virtual void setHighlighted(bool highlighted) = 0;

signals:
    /// A left click, or the desktop's equivalent, with the button's position as returned by frame().
    void clicked(const std::optional<QRect>& frame);
};

} // namespace lapsa
