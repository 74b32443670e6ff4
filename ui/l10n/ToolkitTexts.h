// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTranslator>

namespace lapsa {

/// Italian translations of the toolkit's few visible texts: the menus of text fields, the names of keys, and a screen
/// reader's names for a control's actions. Checks the language for each text, as Localized does.
class ToolkitTexts final : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    /// Null for an unknown text, and in English: the toolkit then shows its own text.
    [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* disambiguation,
                                    int n) const override;

    [[nodiscard]] bool isEmpty() const override { return false; }
};

} // namespace lapsa
