"""Servers of `caudalis serve` for the web tests, on free loopback ports, over a SQLite pair of
databases or schemas of the PostgreSQL server the suite starts (or one started here)."""
import http.client
import itertools
import json
import os
import pathlib
import re
import select
import shutil
import subprocess
import tempfile

import pytest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
EXECUTABLE = os.environ.get("CAUDALIS_EXECUTABLE", str(SOURCE / "build/apps/caudalis/caudalis"))
POSTGRESQL_TOOL = os.environ.get(
    "CAUDALIS_POSTGRESQL_TOOL", str(SOURCE / "build/tests/caudalis_postgresql_test_server"))
EXAMPLES = SOURCE / "examples"
_schemas = itertools.count(1)


def run_program(args, cwd, check=False):
    """Runs the command line as a user would; returns (exit code, stdout bytes, stderr text)."""
    done = subprocess.run([EXECUTABLE, *args], cwd=cwd, capture_output=True, timeout=120)
    if check and done.returncode != 0:
        raise AssertionError(done.stderr.decode())
    return done.returncode, done.stdout, done.stderr.decode()


class Answer:
    def __init__(self, status, headers, body):
        self.status = status
        self.headers = headers
        self.body = body

    def json(self):
        return json.loads(self.body)


class Server:
    """One `caudalis serve` process; stopped by `stop()`."""

    def __init__(self, args, cwd):
        self.process = subprocess.Popen([EXECUTABLE, "serve", "--port", "0", *args], cwd=cwd,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        ready, _, _ = select.select([self.process.stderr], [], [], 20)
        line = self.process.stderr.readline().decode() if ready else ""
        match = re.search(r"serving http://([^/]+):(\d+)/", line)
        if not match:
            self.process.kill()
            raise AssertionError("the server did not start: " + line)
        self.host, self.port = match.group(1), int(match.group(2))
        self.token = None

    def request(self, method, path, body=None, headers=None, session=True):
        """Sends one request; `body` (not bytes) is sent as JSON; state-changing requests carry
        the session token unless `session` is False."""
        headers = dict(headers or {})
        if isinstance(body, (dict, list)):
            body = json.dumps(body).encode()
            headers.setdefault("Content-Type", "application/json")
        if session and method not in ("GET", "HEAD") and "X-Caudalis-Token" not in headers:
            headers["X-Caudalis-Token"] = self.session_token()
        connection = http.client.HTTPConnection(self.host, self.port, timeout=120)
        try:
            connection.request(method, path, body=body, headers=headers)
            response = connection.getresponse()
            return Answer(response.status, {k.lower(): v for k, v in response.getheaders()}, response.read())
        finally:
            connection.close()

    def session_token(self):
        if self.token is None:
            self.token = self.request("GET", "/api/session").json()["token"]
        return self.token

    def url(self, path="/"):
        return f"http://{self.host}:{self.port}{path}"

    def stop(self):
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process.stderr.close()


class Databases:
    """A project and a catalogue database made by `caudalis init`, named as the options take them."""

    def __init__(self, engine, folder, postgresql_port):
        self.engine = engine
        self.folder = folder
        if engine == "sqlite":
            run_program(["init", str(folder)], folder, check=True)
            self.project = str(folder / "project.db")
            self.catalogue = str(folder / "catalogue.db")
        else:
            number = f"{os.getpid()}_{next(_schemas)}"
            uri = f"postgresql://caudalis@127.0.0.1:{postgresql_port}/postgres?schema="
            self.project = uri + "web_project_" + number
            self.catalogue = uri + "web_catalogue_" + number
            run_program(["init", "--project", self.project, "--catalogue", self.catalogue], folder, check=True)

    def options(self):
        return ["--project", self.project, "--catalogue", self.catalogue]


@pytest.fixture(scope="session")
def postgresql_port():
    """The port of the suite's PostgreSQL server, or of one started for these tests."""
    state = os.environ.get("CAUDALIS_TEST_POSTGRESQL")
    own = None
    if not state:
        own = tempfile.mkdtemp(prefix="caudalis-web-pg-")
        state = os.path.join(own, "state")
        subprocess.run([POSTGRESQL_TOOL, "start", state], check=True, capture_output=True, timeout=120)
    with open(state, encoding="utf-8") as lines:
        port = int(lines.read().split("\n")[1])
    yield port
    if own:
        subprocess.run([POSTGRESQL_TOOL, "stop", state], check=False, capture_output=True, timeout=120)
        shutil.rmtree(own, ignore_errors=True)


@pytest.fixture(params=["sqlite", "postgresql"])
def databases(request, tmp_path):
    port = request.getfixturevalue("postgresql_port") if request.param == "postgresql" else None
    return Databases(request.param, tmp_path, port)


@pytest.fixture
def server(databases):
    running = Server(databases.options(), databases.folder)
    yield running
    running.stop()
