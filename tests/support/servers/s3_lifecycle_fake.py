#!/usr/bin/env python3
"""A small S3 for the lifecycle editor's tests: the one part of S3 that the
test Swift lacks. Path-style, one bucket "nvb-rules" with the folders
NVB_a/, NVB_b/ and NVB_b/inner/, and ?lifecycle GET, PUT and DELETE as S3
documents them (NoSuchLifecycleConfiguration when there is none). Signatures
are not checked here (the Swift tests do that); what is checked is what a
lifecycle PUT must carry: Content-MD5 and x-amz-content-sha256 matching the
body, and a LifecycleConfiguration document. Every request is appended to
DIR/requests ("METHOD PATH?QUERY"), the stored rules are DIR/lifecycle.xml.

    s3_lifecycle_fake.py DIR
Binds 127.0.0.1 on a free port and writes the port to DIR/port.
"""
import base64
import hashlib
import os
import sys
import xml.etree.ElementTree as ET
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlsplit

folder = sys.argv[1]
BUCKET = "nvb-rules"
KEYS = ["NVB_a/1", "NVB_b/1", "NVB_b/inner/2", "top"]
rules_file = os.path.join(folder, "lifecycle.xml")


def error(code, message):
    return ("<?xml version=\"1.0\" encoding=\"UTF-8\"?><Error><Code>%s</Code><Message>%s</Message></Error>"
            % (code, message)).encode()


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *args):
        pass

    def reply(self, status, body=b""):
        self.send_response(status)
        self.send_header("Content-Type", "application/xml")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def handle_any(self, method):
        url = urlsplit(self.path)
        with open(os.path.join(folder, "requests"), "a") as log:
            log.write("%s %s?%s\n" % (method, url.path, url.query))
        body = self.rfile.read(int(self.headers.get("Content-Length", "0") or 0))
        query = parse_qs(url.query, keep_blank_values=True)
        parts = [p for p in url.path.split("/") if p]
        if not parts:
            return self.reply(200, ("<ListAllMyBucketsResult><Buckets><Bucket><Name>%s</Name></Bucket></Buckets>"
                                    "</ListAllMyBucketsResult>" % BUCKET).encode())
        if parts[0] != BUCKET:
            return self.reply(404, error("NoSuchBucket", "The specified bucket does not exist"))
        if "lifecycle" in query:
            if method == "GET":
                if not os.path.exists(rules_file):
                    return self.reply(404, error("NoSuchLifecycleConfiguration", "none"))
                with open(rules_file, "rb") as rules:
                    return self.reply(200, rules.read())
            if method == "DELETE":
                if os.path.exists(rules_file):
                    os.remove(rules_file)
                return self.reply(204)
            if method == "PUT":
                md5 = base64.b64encode(hashlib.md5(body).digest()).decode()
                if self.headers.get("Content-MD5") != md5:
                    return self.reply(400, error("InvalidDigest", "Content-MD5 does not match"))
                sha = self.headers.get("x-amz-content-sha256")
                if sha and sha != hashlib.sha256(body).hexdigest():
                    return self.reply(400, error("XAmzContentSHA256Mismatch", "payload hash does not match"))
                try:
                    root = ET.fromstring(body)
                except ET.ParseError:
                    return self.reply(400, error("MalformedXML", "not XML"))
                if not root.tag.endswith("LifecycleConfiguration") or not list(root):
                    return self.reply(400, error("MalformedXML", "no rules"))
                with open(rules_file, "wb") as rules:
                    rules.write(body)
                return self.reply(200)
        if method != "GET":
            return self.reply(501, error("NotImplemented", "not here"))
        prefix = query.get("prefix", [""])[0]
        delimiter = query.get("delimiter", [""])[0]
        contents, prefixes = [], []
        for key in KEYS:
            if not key.startswith(prefix):
                continue
            rest = key[len(prefix):]
            if delimiter and delimiter in rest:
                common = prefix + rest.split(delimiter, 1)[0] + delimiter
                if common not in prefixes:
                    prefixes.append(common)
            else:
                contents.append(key)
        xml = "<ListBucketResult><Name>%s</Name><IsTruncated>false</IsTruncated>" % BUCKET
        xml += "".join("<Contents><Key>%s</Key><Size>1</Size></Contents>" % k for k in contents)
        xml += "".join("<CommonPrefixes><Prefix>%s</Prefix></CommonPrefixes>" % p for p in prefixes)
        self.reply(200, (xml + "</ListBucketResult>").encode())

    def do_GET(self):
        self.handle_any("GET")

    def do_PUT(self):
        self.handle_any("PUT")

    def do_DELETE(self):
        self.handle_any("DELETE")


server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
with open(os.path.join(folder, "port.tmp"), "w") as out:
    out.write(str(server.server_address[1]))
os.rename(os.path.join(folder, "port.tmp"), os.path.join(folder, "port"))
server.serve_forever()
