// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <optional>

namespace lapsa {

enum class ColorScheme
{
    Light,
    Dark,
};

/// The application's light or dark scheme. A change reaches all windows at once, including open ones.
class Appearance : public QObject
{
    Q_OBJECT

public:
    /// Forces a scheme; without a value, follows the desktop's setting live. Setting the same value again is harmless.
    virtual void setForcedScheme(std::optional<ColorScheme> scheme) = 0;

    /// The scheme in use now.
    [[nodiscard]] virtual ColorScheme scheme() const = 0;

signals:
    void schemeChanged(lapsa::ColorScheme scheme);
};

} // namespace lapsa
