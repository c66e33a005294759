#pragma once

#include <optional>
#include <string>

namespace httplib {
struct Request;
struct Response;
}  // namespace httplib

namespace caudalis::web {

/// Who may ask what of the server.
///
/// - On a loopback address the Host header must name the loopback address and the port (a page
///   of another site that renamed itself to 127.0.0.1 is refused).
/// - With an access token (--token-file), every request carries it: the X-Caudalis-Token header,
///   or the cookie that opening "/?token=TOKEN" once sets.
/// - A state-changing request (POST, PUT, DELETE) carries the session token in the
///   X-Caudalis-Token header (a cookie is not enough), and a POST or PUT has a JSON body: a form
///   of another site can do neither. Without --token-file the session token is made at start
///   and the app reads it from GET /api/session, which no other site can read.
class AccessPolicy {
public:
    AccessPolicy(std::string host, int port, std::optional<std::string> accessToken);

    /// True when the request may go on; otherwise the response holds the refusal.
    bool admit(const httplib::Request& request, httplib::Response& response) const;
    /// The token state-changing requests carry in their X-Caudalis-Token header.
    const std::string& sessionToken() const noexcept { return sessionToken_; }
    /// The response headers every answer carries (the Content-Security-Policy first).
    static void secureHeaders(httplib::Response& response);
    /// The headers of a printable report page: its own inline plots may run, in a sandbox
    /// without the app's origin, and it may load nothing.
    static void reportHeaders(httplib::Response& response);

private:
    bool hostAllowed(const httplib::Request& request) const;
    bool carriesAccessToken(const httplib::Request& request) const;
    bool carriesSessionHeader(const httplib::Request& request) const;
    bool opensWithToken(const httplib::Request& request, httplib::Response& response) const;

    std::string host_;
    int port_;
    std::optional<std::string> accessToken_;
    std::string sessionToken_;
};

}  // namespace caudalis::web
