#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "CliErrors.hpp"
#include "CommandLine.hpp"

using namespace caudalis::cli;

namespace {

struct Served {
    int code = 0;
    std::string err;
    std::optional<ServeSettings> settings;
};

/// Runs `caudalis serve ARGS` with a server that only records what it was given.
Served serve(std::vector<std::string> args, bool withServer = true) {
    args.insert(args.begin(), {"caudalis", "serve"});
    std::vector<const char*> argv;
    for (const auto& arg : args) {
        argv.push_back(arg.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    Served served;
    CommandLine commandLine(Services::databases(), out, err);
    if (withServer) {
        commandLine.serveWith(
            [&served](const ServeSettings& settings, std::ostream&) { served.settings = settings; });
    }
    served.code = commandLine.run(static_cast<int>(argv.size()), argv.data());
    served.err = err.str();
    return served;
}

TEST(ServeCommand, ListensOnTheLoopbackAddressByDefault) {
    const auto served = serve({"--project", "p.db", "--catalogue", "c.db", "--workers", "3"});
    ASSERT_EQ(served.code, ExitCode::Ok) << served.err;
    EXPECT_EQ(served.settings->host, "127.0.0.1");
    EXPECT_EQ(served.settings->port, 8080);
    EXPECT_EQ(served.settings->projectPath, "p.db");
    EXPECT_EQ(served.settings->cataloguePath, "c.db");
    EXPECT_EQ(served.settings->workers, 3);
    EXPECT_FALSE(served.settings->token.has_value());
}

TEST(ServeCommand, OneDatabaseHoldsProjectAndCatalogue) {
    const auto served = serve({"--database", "postgresql://office/caudalis"});
    ASSERT_EQ(served.code, ExitCode::Ok) << served.err;
    EXPECT_EQ(served.settings->projectPath, "postgresql://office/caudalis");
    EXPECT_EQ(served.settings->cataloguePath, "postgresql://office/caudalis");
}

TEST(ServeCommand, AProgramWithoutAWebServerSaysSo) {
    const auto served = serve({}, false);
    EXPECT_EQ(served.code, ExitCode::Usage);
    EXPECT_EQ(served.err, "caudalis: this program was built without the web server\n");
}

TEST(ServeCommand, AMissingTokenFileIsNamed) {
    const auto served = serve({"--host", "0.0.0.0", "--token-file", "no-such-token"});
    EXPECT_EQ(served.code, ExitCode::BadInput);
    EXPECT_NE(served.err.find("token file no-such-token"), std::string::npos) << served.err;
    EXPECT_FALSE(served.settings.has_value());
}

}  // namespace
