// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WindowManager.h"

#include "FocusProbe.h"

#include <QRegularExpression>

#include <optional>
#include <tuple>

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

/// An argument would hold against the setting for good.
QStringList argumentsFor(WindowManager::Compositing compositing)
{
    if (compositing == WindowManager::Compositing::Never) {
        return {u"--compositor=off"_s};
    }
    WindowManager::setCompositing(false);
    return {u"--vblank=off"_s};
}

} // namespace

void WindowManager::setCompositing(bool on)
{
    std::ignore = outputOf(u"xfconf-query"_s, {u"-c"_s, u"xfwm4"_s, u"-p"_s, u"/general/use_compositing"_s, u"-n"_s,
                                               u"-t"_s, u"bool"_s, u"-s"_s, on ? u"true"_s : u"false"_s});
}

WindowManager::WindowManager(Compositing compositing)
    : m_process(u"xfwm4"_s, argumentsFor(compositing))
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
