#!/usr/bin/env python3
"""credentials.py FOLDER PERMISSIONS...

Writes into FOLDER what a server needs that knows users by signed credentials: `accounts.conf`, to be
included, with an operator, an account with JetStream, and the account of the system; and for each
PERMISSIONS, `NAME PUBLISH SUBSCRIBE` with commas between subjects, the file NAME.creds of a user who is
permitted that. Keys are made and used by openssl."""

import base64
import json
import pathlib
import subprocess
import sys
import time

folder = pathlib.Path(sys.argv[1])
PREFIXES = {"operator": 14 << 3, "account": 0, "user": 20 << 3}
SEED = 18 << 3


def openssl(*words, data=None):
    return subprocess.run(["openssl", *words], input=data, capture_output=True, check=True).stdout


def encoded(octets):
    """Octets with their checksum (CRC-16 with the polynomial 0x1021) in base 32."""
    check = 0
    for octet in octets:
        check ^= octet << 8
        for _ in range(8):
            check = (check << 1 ^ (0x1021 if check & 0x8000 else 0)) & 0xffff
    return base64.b32encode(octets + check.to_bytes(2, "little")).decode().rstrip("=")


class Key:
    def __init__(self, kind, name):
        self.kind, self.name, self.file = kind, name, folder / f"{kind}-{name}.key"
        openssl("genpkey", "-algorithm", "ed25519", "-out", str(self.file))
        prefix = PREFIXES[kind]
        # The last 32 octets of either form are the key itself.
        public = openssl("pkey", "-in", str(self.file), "-pubout", "-outform", "DER")[-32:]
        private = openssl("pkey", "-in", str(self.file), "-outform", "DER")[-32:]
        self.public = encoded(bytes([prefix]) + public)
        self.seed = encoded(bytes([SEED | prefix >> 5, (prefix & 31) << 3]) + private)

    def signed(self, subject, claims):
        """A token that says the claims of the subject, signed by this key."""
        def part(octets):
            return base64.urlsafe_b64encode(octets).decode().rstrip("=")
        said = {"iat": int(time.time()), "iss": self.public, "sub": subject.public,
                "name": subject.name, "jti": subject.name,
                "nats": {**claims, "type": subject.kind, "version": 2}}
        text = ".".join(part(json.dumps(each).encode())
                        for each in ({"typ": "JWT", "alg": "ed25519-nkey"}, said))
        (folder / "token").write_text(text)
        return text + "." + part(openssl("pkeyutl", "-sign", "-rawin", "-inkey", str(self.file),
                                         "-in", str(folder / "token")))


def account(name, storage):
    key = Key("account", name)
    unlimited = ("subs", "conn", "leaf", "imports", "exports", "data", "payload")
    limits = {**dict.fromkeys(unlimited, -1), "wildcards": True}
    if storage:
        limits |= dict.fromkeys(("mem_storage", "disk_storage", "streams", "consumer"), -1)
    return key, operator.signed(key, {"limits": limits})


operator = Key("operator", "operator")
system, system_token = account("system", False)
rows, rows_token = account("rows", True)
(folder / "accounts.conf").write_text(f"""operator: {operator.signed(operator, {})}
system_account: {system.public}
resolver: MEMORY
resolver_preload: {{ {system.public}: {system_token}, {rows.public}: {rows_token} }}
""")
for permissions in sys.argv[2:]:
    name, publish, subscribe = permissions.split(" ")
    user = Key("user", name)
    token = rows.signed(user, {"pub": {"allow": publish.split(",")}, "subs": -1, "data": -1,
                               "sub": {"allow": subscribe.split(",")}, "payload": -1})
    (folder / f"{name}.creds").write_text(
        f"-----BEGIN NATS USER JWT-----\n{token}\n------END NATS USER JWT------\n\n"
        f"-----BEGIN USER NKEY SEED-----\n{user.seed}\n------END USER NKEY SEED------\n")
