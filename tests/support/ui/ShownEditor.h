// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DurationEditor.h"
#include "PanelWorld.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QTest>

#include <cstdint>
#include <tuple>

namespace lapsa::test {

/// A duration editor on screen, and the number that it edits.
struct ShownEditor
{
    explicit ShownEditor(std::int64_t start, const DurationEditor::Bounds& bounds = year)
        : minutes(start)
        , editor({.read = [this] { return minutes; },
                  .write =
                      [this](std::int64_t value) {
                          minutes = value;
                          ++writes;
                      }},
                 bounds)
    {
        editor.show();
        editor.activateWindow();
        std::ignore = QTest::qWaitForWindowActive(&editor);
    }

    [[nodiscard]] Stepper& stepper(const QString& name) { return named<Stepper>(editor, name); }

    void up(const QString& name)
    {
        QTest::mouseClick(&stepper(name), Qt::LeftButton, {}, stepper(name).incrementRect().center());
    }

    void down(const QString& name)
    {
        QTest::mouseClick(&stepper(name), Qt::LeftButton, {}, stepper(name).decrementRect().center());
    }

    [[nodiscard]] QStringList texts() const
    {
        QStringList texts;
        for (const TextLabel* const label : editor.findChildren<TextLabel*>()) {
            texts.push_back(label->text());
        }
        return texts;
    }

    static constexpr DurationEditor::Bounds year{1, 525600};

    std::int64_t minutes;
    int writes = 0;
    DurationEditor editor;
};

} // namespace lapsa::test
