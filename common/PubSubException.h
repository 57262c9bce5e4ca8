// The one exception the tool raises. Its text travels up to main, which
// prints it; a cause's text is chained behind " caused by: ".
#pragma once

#include <exception>
#include <string>

namespace zorvane::pubsub {

class PubSubException : public std::exception {
  public:
    PubSubException() = default;
    explicit PubSubException(const char* message) : message_m(message != nullptr ? message : "") {}
    explicit PubSubException(const std::string& message) : message_m(message) {}
    PubSubException(const char* message, const std::exception& cause)
        : message_m(std::string(message != nullptr ? message : "") +
                    " caused by: " + cause.what()) {}
    ~PubSubException() override = default;

    const char* what() const noexcept override { return getMessage(); }
    virtual const char* getMessage() const noexcept { return message_m.c_str(); }

  protected:
    std::string message_m;
};

}  // namespace zorvane::pubsub
