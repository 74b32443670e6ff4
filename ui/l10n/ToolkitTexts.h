// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTranslator>

namespace lapsa {

/// The Italian of the few texts that the toolkit shows by itself: the menus of text fields, the names of keys, and what
/// a screen reader says of the actions of a control. Asks for the language anew with each text, as Localized does.
class ToolkitTexts final : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    /// Null for a text that is not known, and in English: the toolkit then shows its own.
    [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* disambiguation,
                                    int n) const override;

    [[nodiscard]] bool isEmpty() const override { return false; }
};

} // namespace lapsa
