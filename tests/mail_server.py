#!/usr/bin/python3
"""A mail server on the loopback for the tests: writes what it takes to files.

mail_server.py FOLDER [CERTIFICATE KEY]: prints its port, then takes mail until
its input ends. Each mail goes to FOLDER/N.eml as it came, and to FOLDER/N.txt as
a reader shows it. With a certificate it offers STARTTLS and wants a login.
"""
import asyncio
import base64
import email
import email.policy
import pathlib
import socket
import ssl
import sys

from aiosmtpd.controller import Controller
from aiosmtpd.smtp import SMTP, AuthResult, LoginPassword

folder = pathlib.Path(sys.argv[1])


class Shop:
    count = 0

    async def handle_RCPT(self, server, session, envelope, address, options):
        if address.startswith("nadie@"):
            return "550 El buzón de «nadie» no existe, 'señor'"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        self.count += 1
        mail = email.message_from_bytes(envelope.original_content, policy=email.policy.default)
        shown = [f"envelope: {envelope.mail_from} > {','.join(envelope.rcpt_tos)}",
                 f"tls: {session.ssl is not None}", f"headers: {' '.join(mail.keys())}"]
        shown += [f"{name}: {mail[name]}" for name in ("From", "To", "Subject", "Message-ID")]
        shown += [f"Date: {mail['Date'].datetime:%d/%m/%Y %H:%M:%S}", f"defects: {mail.defects}"]
        (folder / f"{self.count}.txt").write_text("\n".join(shown) + "\n\n" + mail.get_content().replace("\r\n", "\n"))
        (folder / f"{self.count}.eml").write_bytes(envelope.original_content)
        return await behave(server, mail["Subject"])


async def behave(server, subject):
    """What the subject asks for, once the text is there."""
    if subject == "slow":
        await asyncio.sleep(30)
    if subject == "cut":
        server.transport.abort()
    return "554 No" if subject == "refuse" else "250 OK"


def login(server, session, envelope, mechanism, data):
    right = isinstance(data, LoginPassword) and (data.login, data.password) == (b"caja", b"se'cr et\"o")
    sent = base64.b64encode(b"\0%s\0%s" % (data.login, data.password)).decode()
    return AuthResult(success=right, handled=False, message=None if right else f"535 ¿{sent}?")


class Server(Controller):
    def factory(self):
        options = {"enable_SMTPUTF8": True}
        if len(sys.argv) > 2:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(sys.argv[2], sys.argv[3])
            options.update(tls_context=context, authenticator=login, auth_required=True)
        return SMTP(self.handler, **options)


with socket.create_server(("127.0.0.1", 0)) as free:
    port = free.getsockname()[1]
controller = Server(Shop(), hostname="127.0.0.1", port=port)
controller.start()
print(port, flush=True)
sys.stdin.read()
controller.stop()
