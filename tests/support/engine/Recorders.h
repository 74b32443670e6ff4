// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Appearance.h"
#include "ExpiryWarnings.h"
#include "LapsaItem.h"
#include "Pasteboard.h"
#include "Workspace.h"

#include <QList>
#include <QStringList>
#include <QUrl>

#include <cstdint>
#include <optional>
#include <utility>

namespace lapsa::test {

class RecordingAppearance final : public Appearance
{
public:
    void setForcedScheme(std::optional<ColorScheme> scheme) override { forced.push_back(scheme); }

    [[nodiscard]] ColorScheme scheme() const override;

    QList<std::optional<ColorScheme>> forced;
};

class RecordingWorkspace final : public Workspace
{
public:
    void open(const QUrl& url) override { opened.push_back(url); }

    void reveal(const QUrl& url) override { revealed.push_back(url); }

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

class RecordingPasteboard final : public Pasteboard
{
public:
    void setText(const QString& text) override { texts.push_back(text); }

    QStringList texts;
};

class RecordingWarnings final : public ExpiryWarnings
{
public:
    void sendWarning(const LapsaItem& item, std::int64_t minutes) override { sent.push_back({item.id, minutes}); }

    void sendJointWarning(const QList<LapsaItem>& items, std::int64_t minutes) override
    {
        joint.push_back({items, minutes});
    }

    QList<std::pair<QString, std::int64_t>> sent;
    QList<std::pair<QList<LapsaItem>, std::int64_t>> joint;
};

} // namespace lapsa::test
