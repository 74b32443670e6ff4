// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileUri.h"

#include <QStringDecoder>
#include <QSysInfo>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView scheme = "file:";
constexpr QByteArrayView authority = "//";

/// The part after the scheme and the authority; nothing if the authority is not this machine.
std::optional<QByteArrayView> encodedPath(QByteArrayView uri)
{
    if (uri.size() < scheme.size() || uri.first(scheme.size()).compare(scheme, Qt::CaseInsensitive) != 0) {
        return std::nullopt;
    }
    QByteArrayView rest = uri.sliced(scheme.size());
    if (rest.startsWith(authority)) {
        rest = rest.sliced(authority.size());
        const qsizetype slash = rest.indexOf('/');
        const QByteArrayView host = slash < 0 ? rest : rest.first(slash);
        if (!isThisMachine(QString::fromUtf8(host))) {
            return std::nullopt;
        }
        rest = rest.sliced(host.size());
    }
    if (!rest.startsWith('/')) {
        return std::nullopt;
    }
    return rest;
}

} // namespace

bool isThisMachine(const QString& host)
{
    if (host.isEmpty() || host.compare("localhost"_L1, Qt::CaseInsensitive) == 0) {
        return true;
    }
    const QString own = QSysInfo::machineHostName();
    if (own.isEmpty()) {
        return false;
    }
    const bool bothHaveDomains = host.contains(u'.') && own.contains(u'.');
    const QString name = bothHaveDomains ? host : host.section(u'.', 0, 0);
    return name.compare(bothHaveDomains ? own : own.section(u'.', 0, 0), Qt::CaseInsensitive) == 0;
}

QByteArray withOneLeadingSlash(const QByteArray& path)
{
    qsizetype slashes = 1;
    while (slashes < path.size() && path.at(slashes) == '/') {
        ++slashes;
    }
    return path.sliced(slashes - 1);
}

QByteArray fileUri(const QString& path)
{
    return "file://" + path.toUtf8().toPercentEncoding("/");
}

std::optional<QString> pathOfFileUri(QByteArrayView uri)
{
    const std::optional<QByteArrayView> encoded = encodedPath(uri);
    if (!encoded) {
        return std::nullopt;
    }
    const QByteArray bytes = QByteArray::fromPercentEncoding(encoded->toByteArray());
    if (bytes.contains('\0')) {
        return std::nullopt;
    }
    return textOfUtf8(withOneLeadingSlash(bytes));
}

std::optional<QString> textOfUtf8(QByteArrayView bytes)
{
    // In a name, a byte order mark is an ordinary character.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}

} // namespace lapsa
