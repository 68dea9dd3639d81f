#!/usr/bin/env python3
"""A small Keystone (identity v2.0 and v3) for the Swift client's tests.

It knows one user ("demo", password "secret") in tenant/project "demo" (id
"p-demo") of domain "Default" (id "default"), and answers a login with a
catalog whose object store is the real Swift given on the command line. The
token it hands out is a real tempauth token of that Swift, fetched with the
Swift account's own v1 credentials, so Swift itself checks every request.

    keystone_fake.py PORTFILE SWIFT_URL SWIFT_USER SWIFT_KEY
Binds 127.0.0.1 on a free port and writes the port to PORTFILE.

For token renewal, GET /control/expire?count=N makes the next N logins hand
out a token that Swift no longer takes, as one that ran out would be, and
GET /control/logins answers how many logins there were.
"""
import json
import sys
import threading
import urllib.parse
import urllib.request
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

USER, PASSWORD = "demo", "secret"
PROJECT_NAME, PROJECT_ID = "demo", "p-demo"
DOMAIN_NAME, DOMAIN_ID = "Default", "default"
REGION = "RegionOne"

port_file, swift_url, swift_user, swift_key = sys.argv[1:5]
state = {"expire": 0, "logins": 0}
state_lock = threading.Lock()


def swift_token():
    with state_lock:
        state["logins"] += 1
        stale = state["expire"] > 0
        state["expire"] = max(0, state["expire"] - 1)
    token, storage = fetch_swift_token()
    return ("AUTH_tk" + "0" * 32 if stale else token), storage


def fetch_swift_token():
    request = urllib.request.Request(swift_url + "/auth/v1.0",
                                     headers={"X-Auth-User": swift_user, "X-Auth-Key": swift_key})
    with urllib.request.urlopen(request, timeout=10) as answer:
        return answer.headers["X-Auth-Token"], answer.headers["X-Storage-Url"]


def names(obj, name, ident):
    """True when obj names the thing by its name or its id."""
    return isinstance(obj, dict) and (obj.get("name") == name or obj.get("id") == ident)


class Handler(BaseHTTPRequestHandler):
    def log_message(self, *args):
        pass

    def answer(self, status, body, headers=None):
        data = json.dumps(body).encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        for key, value in (headers or {}).items():
            self.send_header(key, value)
        self.end_headers()
        self.wfile.write(data)

    def do_GET(self):
        url = urllib.parse.urlsplit(self.path)
        if url.path == "/control/expire":
            with state_lock:
                state["expire"] = int(urllib.parse.parse_qs(url.query).get("count", ["1"])[0])
            return self.answer(200, {})
        if url.path == "/control/logins":
            with state_lock:
                return self.answer(200, {"logins": state["logins"]})
        self.answer(404, {"error": {"code": 404, "message": "Not found"}})

    def refuse(self):
        self.answer(401, {"error": {"code": 401, "title": "Unauthorized", "message": "The request you have made requires authentication."}})

    def do_POST(self):
        try:
            body = json.loads(self.rfile.read(int(self.headers.get("Content-Length", "0"))))
            auth = body["auth"]
        except (ValueError, KeyError, TypeError):
            self.answer(400, {"error": {"code": 400, "message": "Malformed request"}})
            return
        if self.path.rstrip("/") == "/v2.0/tokens":
            self.v2(auth)
        elif self.path.rstrip("/") == "/v3/auth/tokens":
            self.v3(auth)
        else:
            self.answer(404, {"error": {"code": 404, "message": "Not found"}})

    def v2(self, auth):
        credentials = auth.get("passwordCredentials", {})
        if credentials.get("username") != USER or credentials.get("password") != PASSWORD:
            return self.refuse()
        if "tenantName" in auth and auth["tenantName"] != PROJECT_NAME:
            return self.refuse()
        if "tenantId" in auth and auth["tenantId"] != PROJECT_ID:
            return self.refuse()
        token, storage = swift_token()
        internal = storage.replace("127.0.0.1", "localhost")
        self.answer(200, {"access": {
            "token": {"id": token, "tenant": {"id": PROJECT_ID, "name": PROJECT_NAME}},
            "serviceCatalog": [
                {"type": "identity", "name": "keystone", "endpoints": [{"region": REGION, "publicURL": "http://127.0.0.1/v2.0"}]},
                {"type": "object-store", "name": "swift", "endpoints": [
                    {"region": REGION, "publicURL": storage, "internalURL": internal}]}]}})

    def v3(self, auth):
        identity = auth.get("identity", {})
        user = identity.get("password", {}).get("user", {})
        if "password" not in identity.get("methods", []) or user.get("name") != USER \
                or user.get("password") != PASSWORD or not names(user.get("domain"), DOMAIN_NAME, DOMAIN_ID):
            return self.refuse()
        scope = auth.get("scope")
        if scope is not None:
            project = scope.get("project", {})
            if not names(project, PROJECT_NAME, PROJECT_ID):
                return self.refuse()
            if "id" not in project and not names(project.get("domain"), DOMAIN_NAME, DOMAIN_ID):
                return self.refuse()
        token, storage = swift_token()
        internal = storage.replace("127.0.0.1", "localhost")
        catalog = [{"type": "object-store", "name": "swift", "endpoints": [
            {"interface": "public", "region": REGION, "url": storage},
            {"interface": "internal", "region": REGION, "url": internal},
            {"interface": "admin", "region": REGION, "url": "http://127.0.0.1:1/"}]}]
        self.answer(201, {"token": {"methods": ["password"], "catalog": catalog if scope is not None else []}},
                    {"X-Subject-Token": token})


server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
with open(port_file + ".tmp", "w") as out:
    out.write(str(server.server_address[1]))
import os
os.rename(port_file + ".tmp", port_file)
server.serve_forever()
