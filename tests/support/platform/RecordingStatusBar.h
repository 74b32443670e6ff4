// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "StatusButton.h"
#include "StatusItem.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <utility>

namespace lapsa::test {

/// A status button that is only noted down.
class RecordingStatusButton final : public StatusButton
{
public:
    [[nodiscard]] std::optional<QRect> frame() const override { return place; }

    bool setTemplateImage(const QString& name, int size) override;

    void setTitle(const QString& title) override { titles.push_back(title); }

    void setToolTip(const QString& toolTip) override { toolTips.push_back(toolTip); }

    void setHighlighted(bool highlighted) override { highlights.push_back(highlighted); }

    std::optional<QRect> place = QRect(400, 0, 24, 24);
    /// Whether there is such an image.
    bool imageFound = true;
    QList<std::pair<QString, int>> images;
    QStringList titles;
    QStringList toolTips;
    QList<bool> highlights;
};

class RecordingStatusItem final : public StatusItem
{
public:
    [[nodiscard]] StatusButton* button() override { return hasButton ? &theButton : nullptr; }

    void setMenu(QList<StatusMenuEntry> entries) override { menu = std::move(entries); }

    bool hasButton = true;
    RecordingStatusButton theButton;
    QList<StatusMenuEntry> menu;
};

class RecordingStatusBar final : public StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override;

    bool itemsHaveButtons = true;
    bool imagesFound = true;
    /// The one that was made last.
    RecordingStatusItem* item = nullptr;
};

} // namespace lapsa::test
