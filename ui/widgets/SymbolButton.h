// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HoverButton.h"
#include "Symbols.h"

namespace lapsa {

/// A square button that shows only a symbol, on a rounded piece of material.
class SymbolButton final : public HoverButton
{
    Q_OBJECT

public:
    struct Look
    {
        QString symbol;
        double size = 16;
        SymbolWeight weight = SymbolWeight::Semibold;
        /// The edge length of the whole button, in logical pixels.
        int extent = 36;
    };

    SymbolButton(const Look& look, const QString& help, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Look m_look;
};

} // namespace lapsa
