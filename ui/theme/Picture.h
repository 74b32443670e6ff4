// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QString>

namespace lapsa {

/// A drawing (SVG file or resource) at a size in logical pixels, crisp at the device pixel ratio; null if there is no
/// such drawing.
[[nodiscard]] QPixmap svgPicture(const QString& file, const QSize& size, double devicePixelRatio);

} // namespace lapsa
