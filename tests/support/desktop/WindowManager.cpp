// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WindowManager.h"

#include "FocusProbe.h"

#include <QRegularExpression>

#include <optional>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// The number after `label` in the output of xwininfo.
int numberAfter(const QString& label, const QString& output)
{
    const QRegularExpression number(QRegularExpression::escape(label) + u"\\s*(-?\\d+)"_s);
    return number.match(output).captured(1).toInt();
}

/// Nothing when it has gone meanwhile.
std::optional<ManagedWindow> windowOfId(const QString& id)
{
    const QString info = QString::fromUtf8(outputOf(u"xwininfo"_s, {u"-id"_s, id}));
    const QString properties =
        QString::fromUtf8(outputOf(u"xprop"_s, {u"-id"_s, id, u"_NET_FRAME_EXTENTS"_s, u"_NET_WM_NAME"_s}));
    if (!info.contains(u"IsViewable"_s)) {
        return std::nullopt;
    }
    const QRect inner(numberAfter(u"Absolute upper-left X:"_s, info), numberAfter(u"Absolute upper-left Y:"_s, info),
                      numberAfter(u"Width:"_s, info), numberAfter(u"Height:"_s, info));
    static const QRegularExpression extents(u"EXTENTS.*= (\\d+), (\\d+), (\\d+), (\\d+)"_s);
    static const QRegularExpression name(u"NAME.*= \"(.*)\""_s);
    const QRegularExpressionMatch around = extents.match(properties);
    const auto margin = [&](int index) { return around.captured(index).toInt(); };
    return ManagedWindow{.id = id,
                         .title = name.match(properties).captured(1),
                         .inner = inner,
                         .frame = inner.adjusted(-margin(1), -margin(3), margin(2), margin(4))};
}

} // namespace

WindowManager::WindowManager()
    : m_process(u"xfwm4"_s, {u"--compositor=off"_s})
{
    awaitWindowManager();
}

QList<ManagedWindow> WindowManager::stacking()
{
    const QString answer = QString::fromUtf8(outputOf(u"xprop"_s, {u"-root"_s, u"_NET_CLIENT_LIST_STACKING"_s}));
    static const QRegularExpression identifier(u"0x[0-9a-f]+"_s);
    QList<ManagedWindow> windows;
    for (const QRegularExpressionMatch& match : identifier.globalMatch(answer)) {
        if (const std::optional<ManagedWindow> window = windowOfId(match.captured())) {
            windows.push_back(*window);
        }
    }
    return windows;
}

} // namespace lapsa::test
