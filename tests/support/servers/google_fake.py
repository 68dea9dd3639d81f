#!/usr/bin/env python3
"""A small Google Cloud Storage (JSON API) with its OAuth 2.0 token endpoint.

It implements the requests the Google client sends, as Google documents
them, and checks what a real server checks:
  GET  /auth    the authorization endpoint of an installed application:
                client_id, a loopback redirect_uri, response_type=code, the
                storage scope and a S256 code_challenge are required; it
                signs the user in at once and redirects to
                redirect_uri?code=...&state=...
  POST /token   grant_type jwt-bearer: the RS256 signature is verified with
                the service account's public key, and iss, aud, scope, iat
                and exp are checked; authorization_code: client id and
                secret, the redirect_uri and the PKCE verifier against the
                challenge, each code once; refresh_token.
  GET/POST /storage/v1/b?project=   list (maxResults, pageToken), create
  GET  /storage/v1/b/NAME            one bucket
  GET  /storage/v1/b/NAME/o          objects (prefix, delimiter, pageToken)
Every storage request needs "Authorization: Bearer <access token>".

    google_fake.py DIR
Writes into DIR a service account's key as JSON (key.json) and as PKCS #12
with the password "notasecret" (key.p12), a key of the same account that
the server does not know (stranger.json), and, last, the port (port).
Client id "nvb-test-client", secret "nvb-test-secret"; project
"nvb-project" with the bucket "nvb-seeded" (NVB_a/1, NVB_a/2, NVB_b/1, top).
"""
import base64
import hashlib
import json
import os
import re
import secrets
import sys
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlencode, urlsplit

from cryptography.exceptions import InvalidSignature
from cryptography.hazmat.primitives import hashes, serialization
from cryptography.hazmat.primitives.asymmetric import padding, rsa
from cryptography.hazmat.primitives.serialization import pkcs12

CLIENT_ID, CLIENT_SECRET = "nvb-test-client", "nvb-test-secret"
PROJECT = "nvb-project"
EMAIL = "backup@nvb-project.iam.gserviceaccount.com"
SCOPE = "https://www.googleapis.com/auth/devstorage.full_control"
key = rsa.generate_private_key(public_exponent=65537, key_size=2048)
access_tokens, refresh_tokens, codes = set(), set(), {}
buckets = {"nvb-seeded": {"location": "US", "storageClass": "STANDARD",
                          "objects": ["NVB_a/1", "NVB_a/2", "NVB_b/1", "top"]}}


def b64url_decode(text):
    return base64.urlsafe_b64decode(text + "=" * (-len(text) % 4))


def listing(objects, prefix, delimiter):
    items, prefixes = [], []
    for name in sorted(objects):
        if not name.startswith(prefix):
            continue
        rest = name[len(prefix):]
        if delimiter and delimiter in rest:
            folder = prefix + rest.split(delimiter, 1)[0] + delimiter
            if folder not in prefixes:
                prefixes.append(folder)
        else:
            items.append({"kind": "storage#object", "name": name, "size": str(len(name)),
                          "updated": "2026-01-02T03:04:05.678Z"})
    return items, prefixes


class Handler(BaseHTTPRequestHandler):
    def log_message(self, *args):
        pass

    def answer(self, status, body, headers=()):
        data = json.dumps(body).encode()
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def oauth_error(self, error, description, status=400):
        self.answer(status, {"error": error, "error_description": description})

    def api_error(self, status, reason, message):
        self.answer(status, {"error": {"code": status, "message": message,
                                       "errors": [{"reason": reason, "message": message}]}})

    def token_uri(self):
        return "http://127.0.0.1:%d/token" % self.server.server_address[1]

    def authorized(self):
        header = self.headers.get("Authorization", "")
        if not header.startswith("Bearer ") or header[7:] not in access_tokens:
            self.api_error(401, "authError", "Invalid Credentials")
            return False
        return True

    def grant(self, refresh=False):
        token = "ya29." + secrets.token_urlsafe(24)
        access_tokens.add(token)
        body = {"access_token": token, "expires_in": 3599, "token_type": "Bearer"}
        if refresh:
            body["refresh_token"] = "1//" + secrets.token_urlsafe(24)
            refresh_tokens.add(body["refresh_token"])
        return self.answer(200, body)

    def do_GET(self):
        url = urlsplit(self.path)
        query = {k: v[0] for k, v in parse_qs(url.query).items()}
        if url.path == "/auth":
            return self.authorization(query)
        if not url.path.startswith("/storage/v1/b") or not self.authorized():
            return None if url.path.startswith("/storage/v1/b") else self.api_error(404, "notFound", "no such path")
        parts = url.path.split("/")[4:]
        if not parts:
            if query.get("project") != PROJECT:
                return self.api_error(403, "forbidden", "no access to project %s" % query.get("project"))
            names = sorted(buckets)
            start = int(query.get("pageToken", "0"))
            count = int(query.get("maxResults", "1000"))
            page = names[start:start + count]
            body = {"kind": "storage#buckets", "items": [
                {"kind": "storage#bucket", "name": n, "location": buckets[n]["location"],
                 "storageClass": buckets[n]["storageClass"]} for n in page]}
            if start + count < len(names):
                body["nextPageToken"] = str(start + count)
            return self.answer(200, body)
        bucket = buckets.get(parts[0])
        if bucket is None:
            return self.api_error(404, "notFound", "The specified bucket does not exist.")
        if len(parts) == 1:
            return self.answer(200, {"kind": "storage#bucket", "name": parts[0]})
        items, prefixes = listing(bucket["objects"], query.get("prefix", ""), query.get("delimiter"))
        entries = [("p", p) for p in prefixes] + [("o", o) for o in items]
        start = int(query.get("pageToken", "0"))
        count = int(query.get("maxResults", "1000"))
        page = entries[start:start + count]
        body = {"kind": "storage#objects", "prefixes": [v for k, v in page if k == "p"],
                "items": [v for k, v in page if k == "o"]}
        if start + count < len(entries):
            body["nextPageToken"] = str(start + count)
        return self.answer(200, body)

    def authorization(self, query):
        redirect = query.get("redirect_uri", "")
        if query.get("client_id") != CLIENT_ID:
            return self.oauth_error("invalid_client", "The OAuth client was not found.", 401)
        if not re.fullmatch(r"http://127\.0\.0\.1:\d+/?", redirect):
            return self.oauth_error("invalid_request", "redirect_uri must be a loopback address")
        if query.get("response_type") != "code" or SCOPE not in query.get("scope", "").split():
            return self.oauth_error("invalid_request", "response_type or scope")
        if query.get("code_challenge_method") != "S256" or len(query.get("code_challenge", "")) != 43:
            return self.oauth_error("invalid_request", "a S256 code_challenge is required")
        code = "4/" + secrets.token_urlsafe(24)
        codes[code] = (redirect, query["code_challenge"])
        target = redirect + "?" + urlencode({"code": code, "state": query.get("state", ""), "scope": SCOPE})
        self.send_response(302)
        self.send_header("Location", target)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def do_POST(self):
        url = urlsplit(self.path)
        data = self.rfile.read(int(self.headers.get("Content-Length", "0")))
        if url.path == "/token":
            return self.token({k: v[0] for k, v in parse_qs(data.decode()).items()})
        if url.path != "/storage/v1/b" or not self.authorized():
            return None if url.path == "/storage/v1/b" else self.api_error(404, "notFound", "no such path")
        if parse_qs(url.query).get("project", [""])[0] != PROJECT:
            return self.api_error(403, "forbidden", "no access to the project")
        try:
            body = json.loads(data)
        except ValueError:
            return self.api_error(400, "parseError", "Parse Error")
        name = body.get("name", "")
        if not re.fullmatch(r"[a-z0-9][a-z0-9._-]{1,61}[a-z0-9]", name):
            return self.api_error(400, "invalid", "Invalid bucket name: '%s'" % name)
        if name in buckets:
            return self.api_error(409, "conflict", "Your previous request to create the named bucket succeeded "
                                                   "and you already own it.")
        buckets[name] = {"location": body.get("location", "US").upper(),
                         "storageClass": body.get("storageClass", "STANDARD"), "objects": []}
        return self.answer(200, {"kind": "storage#bucket", "name": name, "location": buckets[name]["location"]})

    def token(self, form):
        grant = form.get("grant_type")
        if grant == "urn:ietf:params:oauth:grant-type:jwt-bearer":
            return self.jwt_grant(form.get("assertion", ""))
        if form.get("client_id") != CLIENT_ID or form.get("client_secret") != CLIENT_SECRET:
            return self.oauth_error("invalid_client", "Unauthorized", 401)
        if grant == "authorization_code":
            issued = codes.pop(form.get("code", ""), None)
            if issued is None:
                return self.oauth_error("invalid_grant", "Malformed auth code.")
            redirect, challenge = issued
            if form.get("redirect_uri") != redirect:
                return self.oauth_error("invalid_grant", "redirect_uri_mismatch")
            digest = hashlib.sha256(form.get("code_verifier", "").encode()).digest()
            if base64.urlsafe_b64encode(digest).rstrip(b"=").decode() != challenge:
                return self.oauth_error("invalid_grant", "Invalid code verifier.")
            return self.grant(refresh=True)
        if grant == "refresh_token":
            if form.get("refresh_token") not in refresh_tokens:
                return self.oauth_error("invalid_grant", "Token has been expired or revoked.")
            return self.grant()
        return self.oauth_error("unsupported_grant_type", "Invalid grant_type: %s" % grant)

    def jwt_grant(self, assertion):
        try:
            header, claims, signature = assertion.split(".")
            head = json.loads(b64url_decode(header))
            body = json.loads(b64url_decode(claims))
            if head.get("alg") != "RS256":
                raise ValueError("alg")
            key.public_key().verify(b64url_decode(signature), (header + "." + claims).encode(),
                                    padding.PKCS1v15(), hashes.SHA256())
        except (ValueError, InvalidSignature):
            return self.oauth_error("invalid_grant", "Invalid JWT Signature.")
        now = time.time()
        if body.get("iss") != EMAIL:
            return self.oauth_error("invalid_grant", "Invalid email or User ID")
        if body.get("aud") != self.token_uri():
            return self.oauth_error("invalid_grant", "Invalid JWT: audience")
        if SCOPE not in body.get("scope", "").split():
            return self.oauth_error("invalid_scope", "Invalid OAuth scope or ID token audience provided.")
        if not body.get("iat", 0) - 60 <= now < body.get("exp", 0) or body["exp"] - body["iat"] > 3600:
            return self.oauth_error("invalid_grant", "Invalid JWT: Token must be a short-lived token")
        return self.grant()


def key_file(path, private, port):
    pem = private.private_bytes(serialization.Encoding.PEM, serialization.PrivateFormat.PKCS8,
                                serialization.NoEncryption()).decode()
    with open(path, "w") as out:
        json.dump({"type": "service_account", "project_id": PROJECT, "private_key_id": secrets.token_hex(20),
                   "private_key": pem, "client_email": EMAIL, "client_id": "1234567890",
                   "token_uri": "http://127.0.0.1:%d/token" % port}, out)


server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
folder, port = sys.argv[1], server.server_address[1]
key_file(os.path.join(folder, "key.json"), key, port)
key_file(os.path.join(folder, "stranger.json"), rsa.generate_private_key(public_exponent=65537, key_size=2048), port)
with open(os.path.join(folder, "key.p12"), "wb") as out:
    out.write(pkcs12.serialize_key_and_certificates(
        b"privatekey", key, None, None, serialization.BestAvailableEncryption(b"notasecret")))
with open(os.path.join(folder, "port.tmp"), "w") as out:
    out.write(str(port))
os.rename(os.path.join(folder, "port.tmp"), os.path.join(folder, "port"))
server.serve_forever()
