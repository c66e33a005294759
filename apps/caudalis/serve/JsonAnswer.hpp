#pragma once

#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace httplib {
struct Response;
}

namespace caudalis::web {

/// A request the API refuses, with the HTTP status and the message the answer carries.
class ApiError : public std::runtime_error {
public:
    ApiError(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
    int status() const noexcept { return status_; }

private:
    int status_;
};

/// How the API answers: JSON documents, and errors as {"error": MESSAGE}.
class JsonAnswer {
public:
    static void text(httplib::Response& response, const std::string& json, int status = 200);
    static void json(httplib::Response& response, const nlohmann::json& value, int status = 200);
    static void error(httplib::Response& response, int status, const std::string& message);
    /// The request's body as JSON; raises `ApiError` (400) naming what is wrong.
    static nlohmann::json body(const std::string& text);
};

}  // namespace caudalis::web
