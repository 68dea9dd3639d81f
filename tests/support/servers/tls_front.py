#!/usr/bin/env python3
"""A TLS front for a plain HTTP test server: terminates TLS with a
self-signed certificate of its own and passes the bytes on, so that a
client's untrusted-certificate path and its pins can be tried against a
real server (Swift, Azurite) that speaks plain HTTP.

    tls_front.py DIR TARGET_PORT
Makes a fresh key and certificate for 127.0.0.1 (DIR/cert.pem), binds
127.0.0.1 on a free port and writes it to DIR/port last. Every connection
goes to 127.0.0.1:TARGET_PORT.
"""
import asyncio
import datetime
import ipaddress
import os
import ssl
import sys

from cryptography import x509
from cryptography.hazmat.primitives import hashes, serialization
from cryptography.hazmat.primitives.asymmetric import ec
from cryptography.x509.oid import NameOID

folder, target = sys.argv[1], int(sys.argv[2])
key = ec.generate_private_key(ec.SECP256R1())
name = x509.Name([x509.NameAttribute(NameOID.COMMON_NAME, "nvb-tls-front")])
now = datetime.datetime.now(datetime.timezone.utc)
certificate = (x509.CertificateBuilder().subject_name(name).issuer_name(name).public_key(key.public_key())
               .serial_number(x509.random_serial_number())
               .not_valid_before(now - datetime.timedelta(minutes=5)).not_valid_after(now + datetime.timedelta(days=2))
               .add_extension(x509.SubjectAlternativeName([x509.IPAddress(ipaddress.ip_address("127.0.0.1"))]),
                              critical=False)
               .sign(key, hashes.SHA256()))
cert_path, key_path = os.path.join(folder, "cert.pem"), os.path.join(folder, "key.pem")
with open(cert_path, "wb") as out:
    out.write(certificate.public_bytes(serialization.Encoding.PEM))
with open(key_path, "wb") as out:
    out.write(key.private_bytes(serialization.Encoding.PEM, serialization.PrivateFormat.PKCS8,
                                serialization.NoEncryption()))
context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
context.load_cert_chain(cert_path, key_path)


async def pipe(reader, writer):
    try:
        while data := await reader.read(65536):
            writer.write(data)
            await writer.drain()
    except (ConnectionError, ssl.SSLError):
        pass
    finally:
        writer.close()


async def serve(client_reader, client_writer):
    try:
        reader, writer = await asyncio.open_connection("127.0.0.1", target)
    except OSError:
        client_writer.close()
        return
    await asyncio.gather(pipe(client_reader, writer), pipe(reader, client_writer))


async def main():
    server = await asyncio.start_server(serve, "127.0.0.1", 0, ssl=context)
    with open(os.path.join(folder, "port.tmp"), "w") as out:
        out.write(str(server.sockets[0].getsockname()[1]))
    os.rename(os.path.join(folder, "port.tmp"), os.path.join(folder, "port"))
    async with server:
        await server.serve_forever()


asyncio.run(main())
