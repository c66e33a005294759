#include "AccessPolicy.hpp"

#include <httplib.h>

#include <random>

#include "JsonAnswer.hpp"

namespace caudalis::web {

namespace {

constexpr const char* tokenHeader = "X-Caudalis-Token";
constexpr const char* tokenCookie = "caudalis_token";

bool isLoopback(const std::string& host) {
    return host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0;
}

/// Compares two tokens in a time that does not tell how much of them matched.
bool sameToken(const std::string& given, const std::string& token) {
    unsigned difference = given.size() == token.size() ? 0U : 1U;
    for (std::size_t i = 0; i < token.size(); ++i) {
        difference |= static_cast<unsigned char>(token[i]) ^
                      static_cast<unsigned char>(i < given.size() ? given[i] : '\0');
    }
    return difference == 0;
}

std::string randomToken() {
    std::random_device device;
    std::uniform_int_distribution<int> digit(0, 15);
    std::string token;
    for (int i = 0; i < 32; ++i) {
        token += "0123456789abcdef"[digit(device)];
    }
    return token;
}

std::string cookieValue(const httplib::Request& request, const std::string& name) {
    const auto cookies = request.get_header_value("Cookie");
    const auto key = name + "=";
    for (std::size_t at = 0; at < cookies.size();) {
        while (at < cookies.size() && (cookies[at] == ' ' || cookies[at] == ';')) {
            ++at;
        }
        const auto end = std::min(cookies.find(';', at), cookies.size());
        if (cookies.compare(at, key.size(), key) == 0) {
            return cookies.substr(at + key.size(), end - at - key.size());
        }
        at = end;
    }
    return {};
}

bool changesState(const std::string& method) {
    return method != "GET" && method != "HEAD";
}

bool hasJsonBody(const httplib::Request& request) {
    const auto type = request.get_header_value("Content-Type");
    return type.rfind("application/json", 0) == 0;
}

}  // namespace

AccessPolicy::AccessPolicy(std::string host, int port, std::optional<std::string> accessToken)
    : host_(std::move(host)),
      port_(port),
      accessToken_(std::move(accessToken)),
      sessionToken_(accessToken_ ? *accessToken_ : randomToken()) {}

bool AccessPolicy::hostAllowed(const httplib::Request& request) const {
    if (!isLoopback(host_)) {
        return true;
    }
    const auto given = request.get_header_value("Host");
    const auto port = std::string(":").append(std::to_string(port_));
    for (const std::string& name :
         {std::string("127.0.0.1"), std::string("localhost"), std::string("[::1]"), host_}) {
        if (given.size() == name.size() + port.size() && given.compare(0, name.size(), name) == 0 &&
            given.compare(name.size(), port.size(), port) == 0) {
            return true;
        }
    }
    return false;
}

bool AccessPolicy::carriesAccessToken(const httplib::Request& request) const {
    return !accessToken_ || sameToken(request.get_header_value(tokenHeader), *accessToken_) ||
           sameToken(cookieValue(request, tokenCookie), *accessToken_);
}

bool AccessPolicy::carriesSessionHeader(const httplib::Request& request) const {
    return sameToken(request.get_header_value(tokenHeader), sessionToken_);
}

bool AccessPolicy::opensWithToken(const httplib::Request& request, httplib::Response& response) const {
    if (!accessToken_ || request.method != "GET" || request.path != "/" || !request.has_param("token") ||
        !sameToken(request.get_param_value("token"), *accessToken_)) {
        return false;
    }
    std::string cookie = tokenCookie;
    cookie.append("=").append(*accessToken_).append("; Path=/; HttpOnly; SameSite=Strict");
    response.set_header("Set-Cookie", cookie);
    response.set_redirect("/");
    return true;
}

bool AccessPolicy::admit(const httplib::Request& request, httplib::Response& response) const {
    secureHeaders(response);
    if (!hostAllowed(request)) {
        JsonAnswer::error(response, 421, "the Host header must name this server's loopback address and port");
        return false;
    }
    if (opensWithToken(request, response)) {
        return false;
    }
    if (!carriesAccessToken(request)) {
        JsonAnswer::error(response, 401,
                          "this server needs its access token: the X-Caudalis-Token header, or open "
                          "/?token=TOKEN once");
        return false;
    }
    if (changesState(request.method) && !carriesSessionHeader(request)) {
        JsonAnswer::error(response, 403, "a request that changes data needs the X-Caudalis-Token header");
        return false;
    }
    if ((request.method == "POST" || request.method == "PUT") && !hasJsonBody(request)) {
        JsonAnswer::error(response, 415, "the request body must be JSON (Content-Type: application/json)");
        return false;
    }
    return true;
}

void AccessPolicy::secureHeaders(httplib::Response& response) {
    response.set_header("Content-Security-Policy",
                        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
                        "connect-src 'self'; form-action 'none'; frame-ancestors 'none'; base-uri 'none'");
    response.set_header("X-Content-Type-Options", "nosniff");
    response.set_header("Referrer-Policy", "no-referrer");
    response.set_header("Cache-Control", "no-store");
}

void AccessPolicy::reportHeaders(httplib::Response& response) {
    response.headers.erase("Content-Security-Policy");
    response.set_header("Content-Security-Policy",
                        "sandbox allow-scripts allow-modals; default-src 'none'; script-src 'unsafe-inline'; "
                        "style-src 'unsafe-inline'; img-src data:");
}

}  // namespace caudalis::web
