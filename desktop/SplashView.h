// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

class QPainter;

namespace lapsa {

/// The splash picture on its dark rounded background; without the picture, the logo and the name.
class SplashView final : public QWidget
{
    Q_OBJECT

public:
    /// `pictures` is the folder with "LapsaSplash" and "LapsaLogo".
    explicit SplashView(const QString& pictures = defaultPictures(), QWidget* parent = nullptr);

    /// The size of the picture.
    static constexpr QSize extent{500, 500};

    /// If translucent, with round corners and a shadow around the picture; otherwise square and exactly as large as the
    /// picture.
    void setTranslucent(bool translucent);

    [[nodiscard]] static QString defaultPictures();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QPixmap picture() const;
    void paintFallback(QPainter& painter) const;
    void paintPicture(QPainter& painter) const;
    void render();

    QString m_pictures;
    /// The whole view, rendered once, because fading repaints it often.
    QPixmap m_rendered;
};

} // namespace lapsa
