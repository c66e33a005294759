"""Who may ask what of `caudalis serve`: loopback unless told, the access token, JSON bodies with
the token header for changes, the Content-Security-Policy, bounded requests, no server file."""
import http.client
import json
import re
import socket
import time

import pytest

from conftest import EXAMPLES, Databases, Server, run_program

TOKEN = "s3cret-token-of-the-office-0123456789"


@pytest.fixture
def sqlite(tmp_path):
    return Databases("sqlite", tmp_path, None)


@pytest.fixture
def server(sqlite):
    running = Server(sqlite.options(), sqlite.folder)
    yield running
    running.stop()


def small_design():
    return (EXAMPLES / "designs" / "small.json").read_bytes()


def test_another_address_needs_a_token_file(sqlite):
    code, _, message = run_program(["serve", "--host", "0.0.0.0", "--port", "0", *sqlite.options()], sqlite.folder)
    assert code == 2
    assert message == ("caudalis: --host 0.0.0.0 is not a loopback address: give --token-file FILE, whose token "
                       "every request must then carry\n")


def test_a_short_token_is_refused(sqlite):
    (sqlite.folder / "token").write_text("short\n")
    code, _, message = run_program(["serve", "--token-file", "token", "--port", "0", *sqlite.options()],
                                   sqlite.folder)
    assert code == 1
    assert message == ("caudalis: token file token must hold one token of at least 16 characters without "
                       "spaces\n")


def test_database_excludes_project_and_catalogue(sqlite):
    code, _, message = run_program(["serve", "--database", "x", "--project", "y"], sqlite.folder)
    assert code == 2 and "--project excludes --database" in message


def test_with_a_token_every_request_carries_it(sqlite):
    (sqlite.folder / "token").write_text(TOKEN + "\n")
    running = Server(["--host", "0.0.0.0", "--token-file", "token", *sqlite.options()], sqlite.folder)
    try:
        refused = running.request("GET", "/api/catalogue/brands")
        assert refused.status == 401
        assert refused.json()["error"].startswith("this server needs its access token")
        assert running.request("GET", "/app.js").status == 401
        assert running.request("GET", "/api/charts", headers={"X-Caudalis-Token": TOKEN + "x"}).status == 401
        assert running.request("GET", "/api/charts", headers={"X-Caudalis-Token": TOKEN}).status == 200
        opened = running.request("GET", "/?token=" + TOKEN)
        assert opened.status == 302 and opened.headers["location"] == "/"
        cookie = opened.headers["set-cookie"]
        assert "HttpOnly" in cookie and "SameSite=Strict" in cookie
        by_cookie = running.request("GET", "/api/session", headers={"Cookie": cookie.split(";")[0]})
        assert by_cookie.status == 200 and by_cookie.json() == {"token": TOKEN}
        # A cookie alone does not change data: a form of another site could send it.
        post = running.request("POST", "/api/design", small_design(),
                               {"Cookie": cookie.split(";")[0], "Content-Type": "application/json"}, session=False)
        assert post.status == 403
        post = running.request("POST", "/api/design", small_design(),
                               {"X-Caudalis-Token": TOKEN, "Content-Type": "application/json"})
        assert post.status == 200
    finally:
        running.stop()


def test_changes_need_the_token_header_and_a_json_body(server):
    refused = server.request("POST", "/api/design", small_design(), {"Content-Type": "application/json"},
                             session=False)
    assert refused.status == 403
    assert refused.json() == {"error": "a request that changes data needs the X-Caudalis-Token header"}
    form = server.request("POST", "/api/design", b"name=x",
                          {"Content-Type": "application/x-www-form-urlencoded"})
    assert form.status == 415
    assert form.json() == {"error": "the request body must be JSON (Content-Type: application/json)"}
    assert server.request("DELETE", "/api/charts/1", session=False).status == 403


def test_a_renamed_host_is_refused_on_loopback(server):
    answer = server.request("GET", "/api/charts", headers={"Host": "attacker.example:%d" % server.port})
    assert answer.status == 421
    assert answer.json()["error"].startswith("the Host header must name")


def test_every_answer_carries_a_policy_without_inline_script(server):
    for path in ["/", "/app.js", "/api/charts", "/nowhere"]:
        policy = server.request("GET", path).headers["content-security-policy"]
        assert "script-src 'self'" in policy and "unsafe-inline" not in policy
        assert "default-src 'none'" in policy and "frame-ancestors 'none'" in policy
    page = server.request("GET", "/").body.decode()
    assert re.findall(r"<script(?![^>]*\bsrc=)", page) == []
    assert re.findall(r"\son[a-z]+\s*=", page) == []
    assert len(re.findall(r"<script[^>]*\bsrc=\"/", page)) == 2
    for source in ["http://", "https://", "//cdn"]:
        assert source not in page


def test_no_request_names_a_file_of_the_server(server):
    for path in ["/../../etc/passwd", "/app.js/../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd",
                 "/index.html", "/assets/app.js", "/appxjs", "/api/charts/../../project.db"]:
        answer = server.request("GET", path)
        assert answer.status in (400, 404), path
        assert b"root:" not in answer.body and b"SQLite" not in answer.body
    assert server.request("GET", "/nowhere").json() == {"error": "nothing is served at /nowhere"}


def test_a_body_over_the_limit_is_refused(server):
    answer = server.request("POST", "/api/design", b"[" + b"0," * (3 * 1024 * 1024) + b"0]",
                            {"Content-Type": "application/json"})
    assert answer.status == 413
    assert answer.json() == {"error": "the request body is larger than 4194304 bytes"}


def test_a_silent_client_is_dropped_after_the_request_timeout(sqlite):
    running = Server(["--request-timeout", "1", *sqlite.options()], sqlite.folder)
    try:
        with socket.create_connection((running.host, running.port), timeout=10) as client:
            client.sendall(b"GET /api/charts HTTP/1.1\r\nHost: 127.0.0.1\r\n")
            started = time.monotonic()
            closed = client.recv(1000)
            waited = time.monotonic() - started
        assert waited < 8
        assert b"200 OK" not in closed
    finally:
        running.stop()


def test_texts_from_databases_reach_the_page_only_as_text(server):
    script = (EXAMPLES.parent / "apps/caudalis/serve/assets/app.js").read_text()
    assert "innerHTML" not in script and "insertAdjacentHTML" not in script and "document.write" not in script
    assert "eval(" not in script
