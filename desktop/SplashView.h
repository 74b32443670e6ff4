// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

namespace lapsa {

/// The picture of the splash on its dark rounded ground; without the picture the logo and the name.
class SplashView final : public QWidget
{
    Q_OBJECT

public:
    /// `pictures` is the folder with "LapsaSplash" and "LapsaLogo".
    explicit SplashView(const QString& pictures = defaultPictures(), QWidget* parent = nullptr);

    static constexpr QSize extent{500, 500};

    [[nodiscard]] static QString defaultPictures();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QPixmap picture() const;
    void paintFallback(QPainter& painter) const;
    void render();

    QString m_pictures;
    /// All of it, painted once: fading repaints it often.
    QPixmap m_rendered;
};

} // namespace lapsa
