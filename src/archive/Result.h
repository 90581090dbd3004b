#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

// A failure as a value: the German text the caller shows in its status line or alert.
struct Error {
    QString message;
    // For standard error and the system journal, when the message quotes the poet's own
    // words (a title): the same failure told by ids only.
    QString logText = {};

    const QString &forLog() const { return logText.isEmpty() ? message : logText; }
};

template <typename T> class [[nodiscard]] Result {
public:
    Result(T value) : m_state(std::move(value)) {}
    Result(Error error) : m_state(std::move(error)) {}

    bool ok() const { return std::holds_alternative<T>(m_state); }
    explicit operator bool() const { return ok(); }

    T &value() & { return std::get<T>(m_state); }
    const T &value() const & { return std::get<T>(m_state); }
    T &&value() && { return std::get<T>(std::move(m_state)); }
    const T &operator*() const & { return value(); }
    T &operator*() & { return value(); }
    const T *operator->() const { return &value(); }
    T *operator->() { return &value(); }

    const Error &error() const { return std::get<Error>(m_state); }
    QString errorMessage() const { return ok() ? QString() : error().message; }

private:
    std::variant<T, Error> m_state;
};

template <> class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error) : m_error(std::move(error)) {}

    bool ok() const { return !m_error.has_value(); }
    explicit operator bool() const { return ok(); }
    const Error &error() const { return *m_error; }
    QString errorMessage() const { return ok() ? QString() : m_error->message; }

private:
    std::optional<Error> m_error;
};
