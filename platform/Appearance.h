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

/// Whether the application is dark or light: all its windows at once, open ones included.
class Appearance : public QObject
{
    Q_OBJECT

public:
    /// Forces a scheme, or with nothing follows the desktop's setting, live. Setting the same again is harmless.
    virtual void setForcedScheme(std::optional<ColorScheme> scheme) = 0;

    /// The scheme in force now.
    [[nodiscard]] virtual ColorScheme scheme() const = 0;

signals:
    void schemeChanged(lapsa::ColorScheme scheme);
};

} // namespace lapsa
