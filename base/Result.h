// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace lapsa {

/// Why a file operation failed.
struct FileError
{
    /// An `errno` value, never 0.
    int code = 0;
    /// The system's description of it, in the user's language if the system supports it.
    QString description;

    /// The error of one `errno` value.
    [[nodiscard]] static FileError fromErrno(int code);
};

/// A value, or the error that replaces it. Has the member names of `std::expected`, which may replace it one day.
template <typename T>
class [[nodiscard]] Result final
{
public:
    Result(T value) // NOLINT(google-explicit-constructor): `return value;` is the normal case
        : m_state(std::in_place_index<0>, std::move(value))
    {}

    Result(FileError error) // NOLINT(google-explicit-constructor): `return error;` is the other normal case
        : m_state(std::in_place_index<1>, std::move(error))
    {}

    [[nodiscard]] bool has_value() const { return m_state.index() == 0; }

    explicit operator bool() const { return has_value(); }

    /// Only if has_value() is true.
    [[nodiscard]] const T& value() const& { return std::get<0>(m_state); }

    [[nodiscard]] T& value() & { return std::get<0>(m_state); }

    [[nodiscard]] T&& value() && { return std::get<0>(std::move(m_state)); }

    /// Only if has_value() is false.
    [[nodiscard]] const FileError& error() const { return std::get<1>(m_state); }

private:
    std::variant<T, FileError> m_state;
};

/// The outcome of an operation that has no value to return: `return {};` is success.
template <>
class [[nodiscard]] Result<void> final
{
public:
    Result() = default;

    Result(FileError error) // NOLINT(google-explicit-constructor): `return error;` is the other normal case
        : m_state(std::move(error))
    {}

    [[nodiscard]] bool has_value() const { return m_state.index() == 0; }

    explicit operator bool() const { return has_value(); }

    /// Only if has_value() is false.
    [[nodiscard]] const FileError& error() const { return std::get<FileError>(m_state); }

private:
    std::variant<std::monostate, FileError> m_state;
};

} // namespace lapsa
