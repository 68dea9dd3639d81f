#!/usr/bin/env python3
"""A small Backblaze B2 (native API v2) for the B2 client's tests.

It implements the calls the client sends, as B2's documentation describes
them: b2_authorize_account (Basic auth with the key ID and application key),
b2_list_buckets, b2_create_bucket and b2_list_file_names (prefix, delimiter,
startFileName, maxFileCount), with B2's error answers ({"status", "code",
"message"}) and a check of the session token on every call. Key ID "nvbkey",
application key "nvbsecret". The bucket "nvb-seeded" holds
NVB_a/1, NVB_a/2, NVB_b/1 and top.

    b2_fake.py PORTFILE
Binds 127.0.0.1 on a free port and writes the port to PORTFILE.
"""
import base64
import json
import os
import re
import secrets
import sys
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

KEY_ID, KEY = "nvbkey", "nvbsecret"
ACCOUNT = "acct-0001"
tokens = set()
buckets = {"b-seeded": {"bucketName": "nvb-seeded", "bucketType": "allPrivate",
                        "files": ["NVB_a/1", "NVB_a/2", "NVB_b/1", "top"]}}


def listing(files, prefix, delimiter, start, count):
    entries = []
    for name in sorted(files):
        if not name.startswith(prefix):
            continue
        rest = name[len(prefix):]
        if delimiter and delimiter in rest:
            folder = prefix + rest.split(delimiter, 1)[0] + delimiter
            if not entries or entries[-1]["fileName"] != folder:
                entries.append({"fileName": folder, "action": "folder", "contentLength": 0, "uploadTimestamp": 0})
        else:
            entries.append({"fileName": name, "action": "upload", "contentLength": len(name),
                            "uploadTimestamp": 1700000000000})
    entries = [e for e in entries if e["fileName"] >= start]
    page, rest = entries[:count], entries[count:]
    return page, (rest[0]["fileName"] if rest else None)


class Handler(BaseHTTPRequestHandler):
    def log_message(self, *args):
        pass

    def answer(self, status, body):
        data = json.dumps(body).encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def error(self, status, code, message):
        self.answer(status, {"status": status, "code": code, "message": message})

    def do_GET(self):
        if self.path != "/b2api/v2/b2_authorize_account":
            return self.error(404, "not_found", "no such call")
        header = self.headers.get("Authorization", "")
        try:
            key_id, key = base64.b64decode(header.split(" ", 1)[1]).decode().split(":", 1)
        except (IndexError, ValueError):
            return self.error(401, "bad_auth_token", "missing or malformed Authorization")
        if header.split(" ", 1)[0] != "Basic" or key_id != KEY_ID or key != KEY:
            return self.error(401, "unauthorized", "invalid authorization")
        token = "4_" + secrets.token_hex(16)
        tokens.add(token)
        host = "http://127.0.0.1:%d" % self.server.server_address[1]
        self.answer(200, {"accountId": ACCOUNT, "authorizationToken": token, "apiUrl": host, "downloadUrl": host,
                          "recommendedPartSize": 100000000, "absoluteMinimumPartSize": 5000000})

    def do_POST(self):
        if self.headers.get("Authorization") not in tokens:
            return self.error(401, "bad_auth_token", "invalid session token")
        try:
            body = json.loads(self.rfile.read(int(self.headers.get("Content-Length", "0"))))
        except ValueError:
            return self.error(400, "bad_request", "malformed JSON")
        call = self.path.rsplit("/", 1)[-1]
        if call == "b2_list_buckets":
            if body.get("accountId") != ACCOUNT:
                return self.error(401, "unauthorized", "wrong account")
            found = [{"accountId": ACCOUNT, "bucketId": i, "bucketName": b["bucketName"], "bucketType": b["bucketType"]}
                     for i, b in sorted(buckets.items())
                     if body.get("bucketName") in (None, b["bucketName"])]
            return self.answer(200, {"buckets": found})
        if call == "b2_create_bucket":
            name = body.get("bucketName", "")
            if body.get("accountId") != ACCOUNT:
                return self.error(401, "unauthorized", "wrong account")
            if not re.fullmatch(r"[A-Za-z0-9-]{6,50}", name) or name.startswith("b2-"):
                return self.error(400, "bad_request", "Invalid bucketName: " + name)
            if body.get("bucketType") not in ("allPrivate", "allPublic"):
                return self.error(400, "bad_request", "Invalid bucketType")
            if any(b["bucketName"] == name for b in buckets.values()):
                return self.error(400, "duplicate_bucket_name", "Bucket name is already in use.")
            ident = "b-" + secrets.token_hex(6)
            buckets[ident] = {"bucketName": name, "bucketType": body["bucketType"], "files": []}
            return self.answer(200, {"accountId": ACCOUNT, "bucketId": ident, "bucketName": name,
                                     "bucketType": body["bucketType"]})
        if call == "b2_list_file_names":
            bucket = buckets.get(body.get("bucketId"))
            if bucket is None:
                return self.error(400, "bad_request", "Invalid bucketId: %s" % body.get("bucketId"))
            count = int(body.get("maxFileCount", 100))
            if not 1 <= count <= 10000:
                return self.error(400, "bad_request", "maxFileCount out of range")
            page, following = listing(bucket["files"], body.get("prefix", ""), body.get("delimiter"),
                                      body.get("startFileName", ""), count)
            return self.answer(200, {"files": page, "nextFileName": following})
        return self.error(404, "not_found", "no such call")


server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
with open(sys.argv[1] + ".tmp", "w") as out:
    out.write(str(server.server_address[1]))
os.rename(sys.argv[1] + ".tmp", sys.argv[1])
server.serve_forever()
