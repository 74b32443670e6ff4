// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QColor>
#include <QIcon>
#include <QString>

#include <optional>

namespace lapsa {

/// The tray icon's picture: a template image, or a short text if there is none, in one colour, with a soft background
/// while highlighted.
class TrayIcon final
{
public:
    /// `drawings` is the folder of the template images.
    explicit TrayIcon(QString drawings);

    /// Uses the drawing NAME.svg at `size` logical pixels. False, without any change, if there is none.
    [[nodiscard]] bool setTemplateImage(const QString& name, int size);
    void setTitle(const QString& title);

    void setHighlighted(bool highlighted) { m_highlighted = highlighted; }

    /// Sets the colour that the taskbar requests for icons, if any. Without one, the icon is light with a dark outline,
    /// which is visible on taskbars of any colour.
    void setForeground(const std::optional<QColor>& foreground) { m_foreground = foreground; }

    /// What to add to the name of the program for the icon of its theme that taskbars recolour themselves; empty if the
    /// taskbar requests a colour, which such an icon need not get, and if there is no image.
    [[nodiscard]] QString themedSuffix() const;

    /// `extent` pixels wide and high, transparent around the drawing.
    [[nodiscard]] QImage image(int extent) const;
    /// The image at its own size, at twice that, and at the usual sizes of taskbars. A taskbar scales down the next
    /// larger one.
    [[nodiscard]] QList<QImage> images() const;
    [[nodiscard]] QIcon icon() const;

private:
    [[nodiscard]] QImage drawn(int extent, const QColor& color) const;

    QString m_drawings;
    QByteArray m_drawing;
    int m_size = 18;
    QString m_title;
    bool m_highlighted = false;
    std::optional<QColor> m_foreground;
};

} // namespace lapsa
