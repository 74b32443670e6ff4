// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "XSettings.h"

#include "X11Screen.h"
#include "XcbPointer.h"

#include <QCoreApplication>
#include <QtEndian>

#include <xcb/xcb.h>

#include <optional>

namespace lapsa {

namespace {

const QByteArray daemonSelection = "_XSETTINGS_S";
/// In units of four bytes; daemons have some 2 kB.
constexpr std::uint32_t longestProperty = 16 * 1024;

enum class Type : std::uint8_t
{
    Integer = 0,
    Text = 1,
    Color = 2,
};

/// Reads fields one after the other; nothing once the end is passed.
class Reader final
{
public:
    explicit Reader(const QByteArray& bytes)
        : m_bytes(bytes)
        , m_bigEndian(bytes.startsWith('\1'))
    {}

    [[nodiscard]] std::optional<QByteArray> bytes(qsizetype length)
    {
        if (length < 0 || length > m_bytes.size() - m_at) {
            m_at = m_bytes.size();
            return std::nullopt;
        }
        m_at += length;
        return m_bytes.mid(m_at - length, length);
    }

    template <typename T>
    [[nodiscard]] std::optional<T> number()
    {
        const std::optional<QByteArray> raw = bytes(sizeof(T));
        if (!raw) {
            return std::nullopt;
        }
        return m_bigEndian ? qFromBigEndian<T>(raw->constData()) : qFromLittleEndian<T>(raw->constData());
    }

    /// Of that length, filled up to a multiple of four.
    [[nodiscard]] std::optional<QByteArray> padded(qsizetype length)
    {
        const std::optional<QByteArray> text = bytes(length);
        return text && bytes((4 - length % 4) % 4) ? text : std::nullopt;
    }

private:
    QByteArray m_bytes;
    bool m_bigEndian;
    qsizetype m_at = 0;
};

/// An empty variant for a colour.
std::optional<QVariant> valueOf(Reader& reader, Type type)
{
    if (type == Type::Integer) {
        const auto number = reader.number<std::int32_t>();
        return number ? std::optional<QVariant>(*number) : std::nullopt;
    }
    if (type == Type::Text) {
        const auto length = reader.number<std::uint32_t>();
        const auto text = length ? reader.padded(*length) : std::nullopt;
        return text ? std::optional<QVariant>(QString::fromUtf8(*text)) : std::nullopt;
    }
    constexpr qsizetype colorLength = 8;
    return type == Type::Color && reader.bytes(colorLength) ? std::optional(QVariant()) : std::nullopt;
}

} // namespace

XSettingsValues xSettingsOf(const QByteArray& property)
{
    constexpr qsizetype beforeCount = 8; // the byte order and a serial number
    XSettingsValues values;
    Reader reader(property);
    if (!reader.bytes(beforeCount)) {
        return values;
    }
    const std::uint32_t count = reader.number<std::uint32_t>().value_or(0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto type = reader.number<std::uint8_t>();
        const auto unused = reader.bytes(1);
        const auto nameLength = reader.number<std::uint16_t>();
        const auto name = type && unused && nameLength ? reader.padded(*nameLength) : std::nullopt;
        if (!name || !reader.number<std::uint32_t>()) {
            break;
        }
        const std::optional<QVariant> value = valueOf(reader, static_cast<Type>(*type));
        if (!value) {
            break;
        }
        if (value->isValid()) {
            values.insert(*name, *value);
        }
    }
    return values;
}

XSettings::XSettings()
    : m_daemonWatch(daemonSelection)
{
    if (x11Connection() == nullptr) {
        return;
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
    connect(&m_daemonWatch, &X11ManagerWatch::ownerChanged, this, &XSettings::findDaemon);
    findDaemon();
}

XSettings::~XSettings() = default;

void XSettings::findDaemon()
{
    xcb_connection_t* const connection = x11Connection();
    if (connection == nullptr) {
        return;
    }
    m_daemon = x11ManagerOf(connection, daemonSelection);
    if (m_daemon != XCB_WINDOW_NONE) {
        // The toolkit selects the same events on the same connection: whoever comes second changes nothing.
        constexpr std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection, m_daemon, XCB_CW_EVENT_MASK, &events);
    }
    read();
}

void XSettings::read()
{
    xcb_connection_t* const connection = x11Connection();
    XSettingsValues values;
    if (connection != nullptr && m_daemon != XCB_WINDOW_NONE) {
        m_property = x11ExistingAtom(connection, "_XSETTINGS_SETTINGS");
        const auto cookie = xcb_get_property(connection, false, m_daemon, m_property, XCB_ATOM_ANY, 0, longestProperty);
        if (const auto reply = xcbPointer(xcb_get_property_reply(connection, cookie, nullptr))) {
            values = xSettingsOf(QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                            xcb_get_property_value_length(reply.get())));
        }
    }
    if (values != m_values) {
        m_values = values;
        emit changed();
    }
}

bool XSettings::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/)
{
    if (type == "xcb_generic_event_t") {
        const auto* const event = static_cast<const xcb_property_notify_event_t*>(message);
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY && m_daemon != XCB_WINDOW_NONE &&
            event->window == m_daemon) {
            QMetaObject::invokeMethod(this, &XSettings::read, Qt::QueuedConnection);
        }
    }
    return false;
}

} // namespace lapsa
