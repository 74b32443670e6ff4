// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QColor>
#include <QIcon>
#include <QString>

#include <optional>

namespace lapsa {

/// What is drawn into a tray: a template image, or a short text where there is none, in one colour, with a soft ground
/// behind it while highlighted.
class TrayIcon final
{
public:
    /// `drawings` is the folder of the template images.
    explicit TrayIcon(QString drawings);

    /// Takes the drawing NAME.svg. False when there is none; nothing changes then.
    [[nodiscard]] bool setTemplateImage(const QString& name, int size);
    void setTitle(const QString& title);

    void setHighlighted(bool highlighted) { m_highlighted = highlighted; }

    /// The colour that the taskbar asks icons to use, if it does. Without one the icon has a colour of its own that
    /// shows on light and on dark taskbars.
    void setForeground(const std::optional<QColor>& foreground) { m_foreground = foreground; }

    /// `extent` pixels wide and high, transparent around the drawing.
    [[nodiscard]] QImage image(int extent) const;
    /// In the sizes that taskbars ask for, from the image's own size up to four times that. A taskbar scales down the
    /// next larger one.
    [[nodiscard]] QList<QImage> images() const;
    [[nodiscard]] QIcon icon() const;

private:
    QString m_drawings;
    QByteArray m_drawing;
    int m_size = 18;
    QString m_title;
    bool m_highlighted = false;
    std::optional<QColor> m_foreground;
};

} // namespace lapsa
