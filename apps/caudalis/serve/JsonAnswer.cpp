#include "JsonAnswer.hpp"

#include <httplib.h>

namespace caudalis::web {

void JsonAnswer::text(httplib::Response& response, const std::string& json, int status) {
    response.status = status;
    response.set_content(json, "application/json");
}

void JsonAnswer::json(httplib::Response& response, const nlohmann::json& value, int status) {
    text(response, value.dump(2) + "\n", status);
}

void JsonAnswer::error(httplib::Response& response, int status, const std::string& message) {
    json(response, {{"error", message}}, status);
}

nlohmann::json JsonAnswer::body(const std::string& text) {
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        std::string message = "the request body is not JSON: ";
        message += error.what();
        throw ApiError(400, message);
    }
}

}  // namespace caudalis::web
