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
    /// Its place on the desktop, in logical pixels; the point of the last click where only that is known; nothing where
    /// neither is.
    [[nodiscard]] virtual std::optional<QRect> frame() const = 0;

    /// Shows the template image of that name, drawn `size` logical pixels wide and high in a colour that shows on the
    /// taskbar. False when there is no such image.
    virtual bool setTemplateImage(const QString& name, int size) = 0;
    /// Shows a short text in place of an image.
    virtual void setTitle(const QString& title) = 0;
    virtual void setToolTip(const QString& toolTip) = 0;
    /// Marks the button while what it opens is open, where the desktop can show that.
    virtual void setHighlighted(bool highlighted) = 0;

signals:
    /// A left click, or the desktop's equivalent, with the place of the button as by frame().
    void clicked(const std::optional<QRect>& frame);
};

} // namespace lapsa
