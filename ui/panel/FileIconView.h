// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QWidget>

namespace lapsa {

/// Shows a file's icon at a fixed size.
class FileIconView final : public QWidget
{
    Q_OBJECT

public:
    explicit FileIconView(QWidget* parent = nullptr);

    void setIcon(const QIcon& icon);
    /// 0 to 1.
    void setOpacity(double opacity);

    /// The icon's edge length, in logical pixels.
    static constexpr int extent = 24;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
    double m_opacity = 1;
};

} // namespace lapsa
